#include "Parsers/EPSLineSearch.h"

#include <algorithm>

#include "Parsers/EPSLineReader.h"

namespace {

// A mark that the end of the text cuts off counts as one.
bool IsMarkAt(const LineMark& mark, std::string_view text, size_t place, bool atLineStart) {
  if (mark.onlyAtStart && !atLineStart) return false;
  const size_t length = std::min(mark.text.size(), text.size() - place);
  return text.compare(place, length, mark.text, 0, length) == 0;
}

// Where the last line in the text begins; 0 when no line ends in it. The search for the second kind of line
// end is a short one, in all but the strangest files.
size_t FindLastLineStart(std::string_view text) {
  const size_t lineFeed = text.rfind('\n');
  const size_t behind = lineFeed == std::string_view::npos ? 0 : lineFeed + 1;
  const size_t carriageReturn = text.substr(behind).rfind('\r');
  return carriageReturn == std::string_view::npos ? behind : behind + carriageReturn + 1;
}

}  // namespace

EPSLineSearch::EPSLineSearch(FileBuffer& file, const std::vector<LineMark>& marks) : m_file(file) {
  for (const LineMark& mark : marks) {
    const char first = mark.text.front();
    auto group = std::find_if(m_groups.begin(), m_groups.end(),
                              [first](const Group& candidate) { return candidate.first == first; });
    if (group == m_groups.end()) group = m_groups.insert(group, Group{first, {}, {}});
    group->marks.push_back(mark);
    group->second.set(static_cast<unsigned char>(mark.text[1]));
  }
}

void EPSLineSearch::SkipToNextLine() {
  int64_t lineStart = m_file.ReadPosition();
  while (true) {
    const std::string_view ahead = m_file.Ahead();
    const int64_t offset = m_file.ReadPosition();
    const size_t mark = FindMark(ahead, offset, lineStart);
    const size_t start = FindLastLineStart(ahead.substr(0, mark));
    if (start > 0) lineStart = offset + static_cast<int64_t>(start);
    if (mark < ahead.size() || ahead.empty()) break;
    m_file.Skip(ahead.size());
  }
  m_file.pubseekpos(lineStart, std::ios_base::in);
}

size_t EPSLineSearch::FindMark(std::string_view text, int64_t textOffset, int64_t lineStart) {
  size_t limit = text.size();
  for (Group& group : m_groups) {
    const int64_t known = group.clearUpTo - textOffset;
    size_t place = known > 0 ? static_cast<size_t>(known) : 0;
    for (; place < limit; ++place) {
      place = text.substr(0, limit).find(group.first, place);
      if (place == std::string_view::npos) break;
      if (place + 1 < text.size() && !group.second[static_cast<unsigned char>(text[place + 1])]) continue;
      const bool atLineStart =
          place == 0 ? textOffset == lineStart : EPSLineReader::IsEndOfLine(text[place - 1]);
      if (std::any_of(group.marks.begin(), group.marks.end(),
                      [&](const LineMark& mark) { return IsMarkAt(mark, text, place, atLineStart); })) {
        limit = place;
      }
    }
    group.clearUpTo = std::max(group.clearUpTo, textOffset + static_cast<int64_t>(limit));
  }
  return limit;
}
