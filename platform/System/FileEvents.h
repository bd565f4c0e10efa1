#pragma once

#include <chrono>
#include <memory>
#include <string>
#include <vector>

namespace platform {

struct FileEvent {
  enum class Kind {
    /// A new name: made or moved here.
    kAppeared,
    /// Written and closed.
    kChanged,
    /// A name that is gone: removed or moved away. The watched folder itself, too.
    kDisappeared,
    /// Events were lost: look at everything again. `path` is empty.
    kOverflow
  };
  Kind kind;
  std::string path;
};

/// What happens in folders, by inotify.
///
/// Thread: one.
class FileEvents {
 public:
  virtual ~FileEvents() = default;

  /// Watches a folder, without those below it. Watching it again changes nothing.
  ///
  /// \return 0 or the error number.
  virtual int Watch(const std::string& folder) = 0;

  /// The events since the last call; waits for the first one, at most for `timeout`.
  virtual std::vector<FileEvent> Wait(std::chrono::milliseconds timeout) = 0;

  /// To be polled for reading; -1 when there is none.
  virtual int Descriptor() const = 0;

  /// \return Null when the system has no watchers left.
  static std::unique_ptr<FileEvents> Create();
};

}  // namespace platform
