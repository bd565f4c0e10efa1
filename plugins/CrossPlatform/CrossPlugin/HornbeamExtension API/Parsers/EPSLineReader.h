#pragma once

#include <cstdint>
#include <string>

#include "Parsers/FileBuffer.h"

/// Lines of a PostScript file, whatever ends them: CR, LF or two of either kind. So CR LF ends one line, and
/// one empty line between two lines vanishes.
namespace EPSLineReader {

/// What a line keeps at most; the rest of a longer one is read and dropped.
inline constexpr size_t kMaxLineLength = size_t{1} << 20;

bool IsEndOfLine(char c);

/// Reads the next line without its end.
///
/// \param lineOffset  Receives the line's offset in the file.
/// \return False when the file ended before a line end; `line` holds what came until then.
bool ReadNextLine(FileBuffer& file, std::string* line, int64_t* lineOffset);

}  // namespace EPSLineReader
