#pragma once

#include <sys/inotify.h>

#include <array>
#include <boost/asio/io_context.hpp>
#include <boost/asio/posix/stream_descriptor.hpp>
#include <boost/asio/steady_timer.hpp>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>

namespace kiln {

/// Watches folders (inotify, each by itself without those below it) and tells when a change has been followed
/// by a quiet moment: an installer writes many files, and one look behind the last does.
///
/// What a system can't watch isn't told: folders beyond its limit, and what other machines change on a file
/// server.
class FolderWatch {
 public:
  /// A file or folder in it came, went, or was written.
  static constexpr uint32_t kContents = IN_CREATE | IN_DELETE | IN_MOVED_FROM | IN_MOVED_TO | IN_CLOSE_WRITE;
  /// The folder itself went, or who may read it was changed.
  static constexpr uint32_t kFolderItself = IN_DELETE_SELF | IN_MOVE_SELF | IN_ATTRIB;

  /// \param changed  Called on the io_context, never once the watch is gone.
  FolderWatch(boost::asio::io_context& context, uint32_t events, std::function<void()> changed);

  /// One that is watched already stays as it is; one that has gone was dropped by the system.
  void Add(const std::string& folder);
  /// Ends all that is watched. A change that wasn't told yet isn't.
  void Clear();

 private:
  void Wait();
  void OnChange();

  const uint32_t mEvents;
  const std::function<void()> mChanged;
  boost::asio::posix::stream_descriptor mWatch;
  boost::asio::steady_timer mQuiet;
  std::chrono::steady_clock::time_point mFirstChange;
  bool mChangeWaits = false;
  std::array<char, 16384> mEventBytes{};
  std::shared_ptr<bool> mAlive = std::make_shared<bool>(true);
};

}  // namespace kiln
