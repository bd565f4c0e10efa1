#pragma once

#include <boost/asio/io_context.hpp>
#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

#include "protocol/Kiln.pb.h"

namespace kiln {

struct FontLibrary;

/// Deletes the vault's files that no workgroup holds a font of any more. One with an active font stays until
/// a sweep behind the font's deactivation.
///
/// A file goes before its record, so that a sweep that was cut off is ended by the next one.
class OrphanSweep {
 public:
  /// \param removed  Told of the fonts that have gone.
  OrphanSweep(boost::asio::io_context& context, FontLibrary& library,
              std::function<void(const std::vector<uint32_t>&)> removed);

  /// Sweeps soon, in slices. A call during a sweep has another one follow it.
  void Run();
  /// Sweeps if one of these fonts, which were active until now, is in no workgroup.
  void RunBehind(const std::vector<wire::FontPlace>& deactivated);

 private:
  void Slice();

  boost::asio::io_context& mContext;
  FontLibrary& mLibrary;
  const std::function<void(const std::vector<uint32_t>&)> mRemoved;
  bool mRunning = false;
  bool mRunAgain = false;
  int64_t mAfter = 0;
  std::shared_ptr<bool> mAlive = std::make_shared<bool>(true);
};

}  // namespace kiln
