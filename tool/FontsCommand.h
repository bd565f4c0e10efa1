#pragma once

#include <string>
#include <vector>

struct FontsOptions {
  std::vector<std::string> files;
  std::string folder;      ///< with all graphic files below it; empty for none
  bool json = false;       ///< one JSON object a file, on one line
  bool glyphMark = false;  ///< the further keys of each record too
};

/// `hornbeam fonts`: lists the fonts of EPS, PDF and Illustrator files. Files are read by several threads at
/// once; what is printed comes in the order given, a folder's files by their paths. A file that can't be read
/// is named on standard error, and the others are listed all the same.
///
/// \return As grep: 0 when a font was found, 1 when none was, 2 when something couldn't be read.
int RunFonts(const FontsOptions& options);
