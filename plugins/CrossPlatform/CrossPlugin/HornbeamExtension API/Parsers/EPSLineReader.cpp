#include "Parsers/EPSLineReader.h"

#include <algorithm>
#include <string_view>

namespace {

// The end of the first line in the text, or its size. In pieces, so that a file with one kind of line end
// isn't searched far ahead for the other.
size_t FindLineEnd(std::string_view text) {
  constexpr size_t kPiece = 256;
  for (size_t start = 0; start < text.size(); start += kPiece) {
    std::string_view piece = text.substr(start, kPiece);
    const size_t lineFeed = piece.find('\n');
    piece = piece.substr(0, lineFeed);
    const size_t end = std::min(piece.find('\r'), lineFeed);
    if (end != std::string_view::npos) return start + end;
  }
  return text.size();
}

}  // namespace

bool EPSLineReader::IsEndOfLine(char c) {
  return c == '\r' || c == '\n';
}

bool EPSLineReader::ReadNextLine(FileBuffer& file, std::string* line, int64_t* lineOffset) {
  line->clear();
  *lineOffset = file.ReadPosition();
  while (true) {
    const std::string_view ahead = file.Ahead();
    if (ahead.empty()) return false;
    const size_t end = FindLineEnd(ahead);
    line->append(ahead.substr(0, std::min(end, kMaxLineLength - line->size())));
    if (end < ahead.size()) {
      file.Skip(end + 1);
      break;
    }
    file.Skip(end);
  }
  const std::string_view next = file.Ahead();
  if (!next.empty() && IsEndOfLine(next.front())) file.Skip(1);
  return true;
}
