#pragma once

#include <bitset>
#include <cstdint>
#include <string_view>
#include <vector>

#include "Parsers/FileBuffer.h"

/// A text that makes a line worth reading.
struct LineMark {
  std::string_view text;     ///< Two characters at least; outlives the search.
  bool onlyAtStart = false;  ///< It counts at the start of a line alone.
};

/// Passes over the lines of a PostScript file that hold none of some marks, as fast as bytes can be searched:
/// most of a file is a body of no interest.
///
/// The file is read by others between the steps, but only ever forwards and by whole lines.
class EPSLineSearch {
 public:
  EPSLineSearch(FileBuffer& file, const std::vector<LineMark>& marks);

  /// From the start of a line, moves on to the next line that may hold a mark, this one included; where there
  /// is none, to the file's last line. The line found can still turn out to hold none.
  void SkipToNextLine();

 private:
  // The marks that begin with the same character.
  struct Group {
    char first;
    std::vector<LineMark> marks;
    std::bitset<256> second;  // characters that follow the first one in a mark
    int64_t clearUpTo = 0;    // no mark of the group begins before that offset
  };

  // The place in the text of the first mark, or the text's size.
  size_t FindMark(std::string_view text, int64_t textOffset, int64_t lineStart);

  FileBuffer& m_file;
  std::vector<Group> m_groups;
};
