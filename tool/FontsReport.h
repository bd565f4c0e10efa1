#pragma once

#include <cstddef>
#include <string>

struct FontsOptions;

/// What `hornbeam fonts` says of one file.
struct FontsReport {
  bool isDone = false;
  size_t fontCount = 0;
  std::string text;     ///< Lines to be printed.
  std::string problem;  ///< Why the file couldn't be read; empty when it was.
};

/// Reads a file's fonts. Thread: any.
FontsReport ReadFontsReport(const std::string& path, const FontsOptions& options);

/// Why a path can't be opened as a file, "" when it can.
std::string WhyUnreadable(const std::string& path);
