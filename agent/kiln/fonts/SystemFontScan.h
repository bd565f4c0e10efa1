#pragma once

#include <array>
#include <boost/asio/io_context.hpp>
#include <boost/asio/posix/stream_descriptor.hpp>
#include <boost/asio/steady_timer.hpp>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "protocol/FontReading.pb.h"
#include "protocol/Framing.h"

namespace kiln {

class BoundedLog;
class ChildProcess;

/// One look, by a child, at what fontconfig shows of the system's fonts.
class SystemFontScan : public std::enable_shared_from_this<SystemFontScan> {
 public:
  struct Listing {
    std::vector<std::string> folders;  ///< where fontconfig looks
    std::vector<wire::SystemFace> faces;
  };
  using Done = std::function<void(const Listing*)>;

  /// \param excluded  The folder with Kiln's own links.
  /// \param done  Called once, not from within this call; with null when the child failed or took too long.
  static void Start(boost::asio::io_context& context, const std::string& program, const std::string& excluded,
                    Done done);

  SystemFontScan(boost::asio::io_context& context, Done done);
  ~SystemFontScan();

 private:
  void Run(const std::string& program, const std::string& excluded);
  void Read();
  bool TakeFrames();
  void Finish(bool whole);

  boost::asio::io_context& mContext;
  Done mDone;
  std::unique_ptr<ChildProcess> mChild;
  boost::asio::posix::stream_descriptor mOutput;
  boost::asio::steady_timer mTimer;
  std::array<char, 65536> mBuffer{};
  FrameReader mFrames;
  Listing mListing;
};

}  // namespace kiln
