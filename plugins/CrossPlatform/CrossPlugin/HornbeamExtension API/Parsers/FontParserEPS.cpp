#include "Parsers/FontParserEPS.h"

#include <algorithm>

#include "Activation/Vocabulary/FontRecord.h"
#include "Activation/Vocabulary/FontRecordKeys.h"
#include "Identity/GlyphMarkSupport.h"
#include "Memory/CFVector.h"
#include "Parsers/EPSLineReader.h"
#include "Parsers/EPSLineSearch.h"
#include "Utilities/DebugUtils.h"
#include "Utilities/OperationTrace.h"

namespace {

constexpr const char* kEndComments = "%%EndComments";

}  // namespace

// A comment that is looked for in each line; without a handler it is the end of the header.
struct FontParserEPS::CommentKey {
  const char* text;
  Handler handler;
  bool leavesLine;  // the handler has read a line that still waits to be tested
};

FontParserEPS::FontParserEPS(CFURLRef url, CFStringRef path, bool readOnly)
    : m_file(url, path), m_readOnly(readOnly), m_fonts(MakeArray()) {}

void FontParserEPS::Parse() {
  const OperationTrace trace("FontParserEPS::Parse", "Entering %s()", "FontParserEPS::Parse");
  m_fonts = MakeArray();
  m_names = FontNameIndex();
  m_removed.clear();
  m_removedCount = 0;
  m_endCommentsOffset = 0;
  if (!m_file.Open(true)) return;
  m_file.stream.seekg(LocatePostScriptSource(), std::ios_base::beg);
  ReadComments();
  m_file.stream.close();
  DropRemovedFonts();
}

void FontParserEPS::ReadComments() {
  static constexpr CommentKey kKeys[] = {
      {"%%DocumentFonts: ", &FontParserEPS::ReadPSCommentDocumentFonts, true},
      {"%%DocumentFontSpecs: ", &FontParserEPS::ReadPSCommentDocumentFontSpecs, true},
      {"%%DocumentSuppliedResources: ", &FontParserEPS::ReadPSCommentDocumentResources, true},
      {"%ADOBeginSubsetFont:", &FontParserEPS::ReadPSCommentEmbedFont, false},
      {"%%DocumentNeededResources: ", &FontParserEPS::ReadPSCommentDocumentResources, true},
      {kEndComments, nullptr, false},
      {"%%DocumentNeededFonts: ", &FontParserEPS::ReadPSCommentDocumentFonts, true},
  };
  std::vector<LineMark> marks;
  for (const CommentKey& key : kKeys) marks.push_back({key.text});
  EPSLineSearch search(m_file.stream.Buffer(), marks);
  std::string line;
  int64_t lineOffset = 0;
  bool goOn = true;
  bool lineWaits = false;
  bool foundFontComment = false;
  while (goOn || lineWaits) {
    if (!lineWaits) {
      search.SkipToNextLine();
      goOn = ReadNextLine(&line, &lineOffset);
    }
    lineWaits = false;
    for (const CommentKey& key : kKeys) {
      const size_t position = line.find(key.text);
      if (position == std::string::npos) continue;
      if (key.handler == nullptr) {
        if (m_endCommentsOffset == 0) m_endCommentsOffset = lineOffset + static_cast<int64_t>(position);
        if (foundFontComment) continue;
        goOn = false;
        break;
      }
      foundFontComment = true;
      goOn = (this->*key.handler)(key.text, line, position, &lineOffset);
      lineWaits = key.leavesLine;
      if (lineWaits) break;
    }
  }
  OutputIndentedAndFormattedString(
      0, "Stopped reading after line at offset %lld (offset is in CHARACTERS, not bytes).",
      static_cast<long long>(lineOffset));
}

int64_t FontParserEPS::LocatePostScriptSource() {
  m_file.stream.seekg(0, std::ios_base::beg);
  m_header = EPSBinaryHeader();
  EPSBinaryHeader header;
  unsigned long count = EPSBinaryHeader::kSize;
  if (ReadStream(m_file.stream, &count, header.Bytes().data()) != 0) return 0;
  m_header = header;
  if (IsWindowsEPS(header.FirstWord())) return header.PostScriptStart();
  if (IsMacEPS(header.FirstWord())) {
    std::fill(m_header.Bytes().begin() + 4, m_header.Bytes().end(), '\0');
  } else {
    AddNote("no EPS header");
  }
  return 0;
}

bool FontParserEPS::ReadNextLine(std::string* line, int64_t* lineOffset) {
  return EPSLineReader::ReadNextLine(m_file.stream.Buffer(), line, lineOffset);
}

void FontParserEPS::GetObsoleteGlyphmarkData(bool bWantGlyphMark, CFMutableArrayRef& outFonts) {
  const OperationTrace trace("FontParserEPS::GetObsoleteGlyphmarkData", "Entering %s()",
                             "FontParserEPS::GetObsoleteGlyphmarkData");
  MakeArrayIfNull(outFonts);
  const CFIndex count = FontRecord::Count(m_fonts.get());
  if (bWantGlyphMark) {
    if (count > 0) CFArrayAppendArray(outFonts, m_fonts.get(), CFRangeMake(0, count));
    return;
  }
  for (CFIndex i = 0; i < count; ++i) {
    CFStringRef name = FontRecord::GetPostScriptName(FontRecord::At(m_fonts.get(), i));
    if (name == nullptr) continue;
    CFArrayAppendValue(outFonts, adoptCF(GlyphMarkSupport::CreateGlyphMarkDictionary(name)).get());
  }
}
