#include <array>
#include <cstring>

#include "Activation/Vocabulary/FontRecordKeys.h"
#include "Identity/GlyphMarkSupport.h"
#include "Parsers/FontParserPDF.h"
#include "Parsers/ParsedText.h"
#include "Utilities/DebugUtils.h"
#include "Utilities/OperationTrace.h"

namespace {

// A dictionary's text is kept for the keys of a few bytes each that it may hold.
constexpr int64_t kMaxCapture = int64_t{1} << 20;
constexpr size_t kMaxKeptText = size_t{8} << 20;
// Without it the keys are those of the font's own dictionary, which mean other things.
constexpr const char* kGlyphMarkMarker = "/FontIdentifier";

}  // namespace

void FontParserPDF::ProcessFonts() {
  static constexpr const char* kName = "FontParserPDF::ProcessFonts";
  const OperationTrace trace(kName, "Entering %s()", kName);
  const bool bTraces = DebugUtils::IsTraceHeard();
  for (const PDFObject& object : m_vFontObjects) {
    if (m_nError != 0) return;
    if (bTraces) OutputIndentedAndFormattedString(0, " processing font %d ...", object.nObjectNumber);
    if (!EnterObject(object)) continue;
    PDFFontRecord record;
    record.object = object;
    ReadFontDictionary(&record);
    GlyphMarkSupport::ResolveMMFontString(&record.sFontName);
    if (bTraces) {
      OutputIndentedAndFormattedString(0, "Adding '%s' to m_vFontRecords", record.sFontName.c_str());
    }
    // Of the records of one name the first one counts: fonts of every page would only be found again.
    if (m_fontNames.insert(record.sFontName).second) {
      m_vFontRecords.push_back(std::move(record));
    } else {
      m_nKeptText -= record.sGlyphMarkBuffer.size();
    }
  }
}

void FontParserPDF::ReadFontDictionary(PDFFontRecord* record) {
  int64_t nesting = 0;
  int64_t start = -1;
  while (m_nError == 0) {
    const std::string_view token = ProcessToken();
    if (token == "endobj") return;
    if (token == "<<") {
      if (nesting++ == 0) start = GetCurrentPosition() - 2;
    } else if (token == ">>") {
      if (--nesting == 0) CaptureDictionaryText(start, GetCurrentPosition() - 2, record);
    } else if (token == "/BaseFont" || token == "/FontName") {
      record->sFontName = StripPDFFontName(ProcessToken());
    } else if (token == "/Type" || token == "/Subtype" || token == "/Encoding" || token == "/FirstChar" ||
               token == "/LastChar") {
      ProcessToken();
    } else if (token == "/CharSet" || token == "/FontFile" || token == "/FontFile2" ||
               token == "/FontFile3") {
      ProcessLine();
    } else if (token == "/Widths") {
      SkipWidths();
    }
  }
}

void FontParserPDF::SkipWidths() {
  if (ProcessToken() != "[") {
    ProcessToken();
    ProcessToken();
    return;
  }
  while (m_nError == 0 && ProcessToken() != "]") {
  }
}

void FontParserPDF::CaptureDictionaryText(int64_t start, int64_t end, PDFFontRecord* record) {
  const int64_t length = end - start;
  if (start < 0 || length <= 0 || length > kMaxCapture || m_nError != 0) return;
  const std::string bytes = ReadBytesAt(start, static_cast<size_t>(length));
  if (static_cast<int64_t>(bytes.size()) < length) m_nError = -1;
  const std::string_view text = bytes.c_str();  // up to a zero byte
  m_nKeptText -= record->sGlyphMarkBuffer.size();
  record->sGlyphMarkBuffer.clear();
  // Only a text that will be searched is worth its memory.
  if (text.find(kGlyphMarkMarker) == std::string_view::npos || text.size() > kMaxKeptText - m_nKeptText)
    return;
  record->sGlyphMarkBuffer = text;
  m_nKeptText += text.size();
}

void FontParserPDF::ConvertPDFFontToFontRecord(const PDFFontRecord& record, CFDictionaryRef* outFont,
                                               bool bWantGlyphMark) {
  static const std::array<std::pair<const char*, CFStringRef>, 8> kKeys = {{
      {"/Foundry", kGM_FoundryKey},
      {"/Version", kGM_VersionKey},
      {"/Kerning", kGM_KerningChecksumKey},
      {"/OutlineFileSize", kGM_OutlineFileSizeKey},
      {"/Kind", kGM_KindKey},
      {"/Checksum", kGM_ChecksumKey},
      {"/GlyphMark_1_2_Checksum", kGM_GlyphMark_1_2_Key},
      {"/Family", kGM_FamilyKey},
  }};
  CFMutableDictionaryRef font =
      GlyphMarkSupport::CreateGlyphMarkDictionary(MakeParsedText(record.sFontName).get());
  GlyphMarkSupport::ResolveDictionaryMMFontName(font);
  if (bWantGlyphMark && record.sGlyphMarkBuffer.find(kGlyphMarkMarker) != std::string::npos) {
    for (const auto& [key, recordKey] : kKeys) {
      AddKeyValueToFontRecord(record.sGlyphMarkBuffer, key, recordKey, font);
    }
  }
  *outFont = font;
}

bool FontParserPDF::ParseKeyFromGlyphMarkBuffer(const std::string& buffer, const std::string& key,
                                                std::string& outValue) {
  const std::string_view text = buffer.c_str();
  const size_t found = text.find(key);
  if (found == std::string_view::npos) return false;
  const size_t begin = text.find_first_not_of(" \t", found + key.size());
  if (begin == std::string_view::npos) return false;

  std::string value;
  if (text[begin] == '(') {
    const size_t close = text.find(')', begin + 1);
    if (close == std::string_view::npos) return false;
    value = text.substr(begin + 1, close - begin - 1);
    if (value.find('(') != std::string::npos) {
      // One level of nesting: the value goes on behind its ")", which itself is left out.
      const size_t nextClose = text.find(')', close + 1);
      if (nextClose == std::string_view::npos) return false;
      value += text.substr(close + 1, nextClose - close - 1);
    }
  } else {
    // The text ends before the dictionary's ">>", which would end the last value.
    value = text.substr(begin, text.find_first_of(" \t\r\n\f/>", begin) - begin);
  }
  outValue += value;
  return !value.empty();
}

void FontParserPDF::AddKeyValueToFontRecord(const std::string& buffer, const std::string& key,
                                            CFStringRef recordKey, CFMutableDictionaryRef font) {
  std::string value;
  if (ParseKeyFromGlyphMarkBuffer(buffer, key, value)) {
    CFDictionarySetValue(font, recordKey, MakeParsedText(value).get());
  }
}
