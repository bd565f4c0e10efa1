#pragma once

#include <cstdint>
#include <string>

#include "kiln/store/FileState.h"
#include "kiln/system/KilnPaths.h"

namespace kiln {

/// The folder with the library's own copies of its font files: `vault/<2 digits>/<SHA-256>.<extension>`, so
/// that the same content is there once. Metrics of a Type 1 font lie beside it with ".afm" behind its name.
class Vault {
 public:
  explicit Vault(const KilnPaths& paths) : mPaths(paths) {}

  /// Makes the folders, and empties the one for copies on their way.
  /// \return 0, or kInvalidVault when it can't be written.
  uint32_t Prepare();

  /// A path in the incoming folder that no file has; each call gives another.
  std::string NewIncomingPath();

  /// Moves a copy and, with `metrics`, its ".afm" to their place. A sound file that is there already stays,
  /// and the copy is removed. \param size  Of the file. \return 0, kDiskFull or kFileSystemError.
  uint32_t TakeIn(const std::string& incoming, bool metrics, const std::string& hash,
                  const std::string& extension, uint64_t size);

  /// Whether a file still is what was put there, as far as a look without reading it tells.
  static FileState StateOf(const std::string& path, uint64_t size);

  /// Removes a file of the vault and its metrics.
  static void Remove(const std::string& path);
  /// Removes a copy that isn't wanted.
  void Discard(const std::string& incoming);

  std::string PathOf(const std::string& hash, const std::string& extension) const {
    return PathOf(mPaths, hash, extension);
  }
  static std::string PathOf(const KilnPaths& paths, const std::string& hash, const std::string& extension);
  /// What is behind the last dot of a file name, in lower case, when it looks like an extension; else "font".
  static std::string ExtensionOf(const std::string& fileName);

 private:
  const KilnPaths& mPaths;
  uint64_t mNextIncoming = 1;
};

}  // namespace kiln
