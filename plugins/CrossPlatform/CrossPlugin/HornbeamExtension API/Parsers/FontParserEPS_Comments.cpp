// What the font comments of an EPS file say.
#include <cstring>

#include "Parsers/EPSLineSearch.h"
#include "Parsers/FontParserEPS.h"

namespace {

constexpr const char* kContinuation = "%%+ ";
constexpr const char* kFontTag = "font ";
constexpr const char* kFontName = "/FontName /";
constexpr const char* kEndSubset = "%ADOEndSubsetFont";

}  // namespace

bool FontParserEPS::ReadPSCommentDocumentFonts(const char* key, std::string& line, unsigned long keyPosition,
                                               int64_t* lineOffset) {
  bool goOn = true;
  for (size_t place = keyPosition; place != std::string::npos; place = line.find(key)) {
    // The rest of the line is one name, blanks and all.
    RegisterFont(line.substr(place + std::strlen(key)), EFontSource::kComment);
    goOn = ReadNextLine(&line, lineOffset);
    key = kContinuation;
  }
  return goOn;
}

bool FontParserEPS::ReadPSCommentDocumentFontSpecs(const char* key, std::string& line,
                                                   unsigned long keyPosition, int64_t* lineOffset) {
  bool goOn = true;
  for (size_t place = keyPosition; place != std::string::npos; place = line.find(key)) {
    RegisterFontWithGlyphMark(line.substr(place + std::strlen(key)));
    goOn = ReadNextLine(&line, lineOffset);
    key = kContinuation;
  }
  return goOn;
}

bool FontParserEPS::ReadPSCommentDocumentResources(const char* key, std::string& line,
                                                   unsigned long keyPosition, int64_t* lineOffset) {
  bool goOn = true;
  for (size_t place = keyPosition; place != std::string::npos; place = line.find(key)) {
    // "font " is taken to stand directly behind the key, wherever in the line it was found.
    const size_t name = place + std::strlen(key) + std::strlen(kFontTag);
    if (line.find(kFontTag) != std::string::npos && name < line.size()) {
      RegisterFont(line.substr(name), EFontSource::kComment);
    }
    goOn = ReadNextLine(&line, lineOffset);
    key = kContinuation;
  }
  return goOn;
}

bool FontParserEPS::ReadPSCommentEmbedFont(const char* key, std::string& line, unsigned long keyPosition,
                                           int64_t* lineOffset) {
  const std::string beginText = line.substr(keyPosition + std::strlen(key));
  std::string fontName;
  EPSLineSearch search(m_file.stream.Buffer(), {{kFontName, true}, {kEndSubset}});
  bool goOn = true;
  while (goOn) {
    if (line.starts_with(kFontName)) {
      fontName = line.substr(std::strlen(kFontName));
      size_t end = fontName.find(' ');
      if (end == std::string::npos) end = fontName.find('\t');
      if (end != std::string::npos) fontName.resize(end);
    } else if (line.find(kEndSubset) != std::string::npos) {
      break;
    }
    search.SkipToNextLine();
    goOn = ReadNextLine(&line, lineOffset);
  }
  if (!fontName.empty()) {
    RegisterFont(fontName, EFontSource::kSubset);
  } else if (beginText.find("AddGlyphs") == std::string::npos) {
    // The blank in front of the name stays; looking the font up passes over it.
    RegisterFont(beginText, EFontSource::kSubset);
  }
  return goOn;
}
