#pragma once

#include <string>
#include <utility>

namespace kiln {

/// Holds a file locked (flock) for the life of the object; the lock goes with the process however that ends.
/// The file stays, since removing it would let two processes lock two files of one name.
class LockFile {
 public:
  LockFile() = default;
  ~LockFile();
  LockFile(LockFile&& other) noexcept : mFile(std::exchange(other.mFile, -1)) {}
  LockFile& operator=(LockFile&&) = delete;

  /// Waits half a second for another process at most: one that was killed may hold its locks for a moment
  /// after its clients have lost it, and they start the next one at once.
  /// \return 0; EWOULDBLOCK when another process holds it; or another errno.
  int Take(const std::string& path);

 private:
  int mFile = -1;
};

}  // namespace kiln
