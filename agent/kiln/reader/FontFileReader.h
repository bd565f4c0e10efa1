#pragma once

#include <memory>

#include "protocol/FontReading.pb.h"

namespace kiln {

/// Reads whole font files: every face, its identity and its checksums. Meant for a process that may die on
/// what it reads; see FontReaderProgram.h.
class FontFileReader {
 public:
  FontFileReader();
  ~FontFileReader();

  /// \return The file's record; or one with an error: kFileNotFound, kOpenFailed, kNotAFontFile, kCorrupt,
  ///         kDiskFull or kFileSystemError for the copy. With an error no copy is left.
  wire::ReadFile Read(const wire::ReaderJob& job);

 private:
  struct Engine;
  const std::unique_ptr<Engine> mEngine;
};

}  // namespace kiln
