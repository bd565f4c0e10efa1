#include "Parsers/FontParser.h"

#include <algorithm>
#include <array>
#include <cstring>

#include "Memory/CFVector.h"
#include "Parsers/FStreamWrapper.h"
#include "Parsers/FontParserEPS.h"
#include "Parsers/FontParserPDF.h"
#include "Utilities/DebugUtils.h"
#include "Utilities/OperationTrace.h"

namespace {

RetainPtr<CFURLRef> MakeURL(CFStringRef path, CFURLPathStyle pathStyle) {
  RetainPtr<CFURLRef> url =
      adoptCF(CFURLCreateWithFileSystemPath(kCFAllocatorDefault, path, pathStyle, false));
  if (url) return url;
  const std::string text = ToStdString(path);
  OutputIndentedAndFormattedString(0, "WARNING: CFURLCreateWithFileSystemPath('%s' length %d) failed.",
                                   text.c_str(), static_cast<int>(text.size()));
  url = adoptCF(CFURLCreateFromFileSystemRepresentation(kCFAllocatorDefault,
                                                        reinterpret_cast<const UInt8*>(text.data()),
                                                        static_cast<CFIndex>(text.size()), false));
  if (!url) {
    OutputIndentedAndFormattedString(0, "ERROR: CFURLCreateFromFileSystemRepresentation('%s') failed.",
                                     text.c_str());
  }
  return url;
}

}  // namespace

FontParser* FontParser::CreateParserWithFile(CFStringRef path, bool readOnly, CFURLPathStyle pathStyle) {
  const OperationTrace trace("FontParser::CreateParserWithFile", "Entering %s()",
                             "FontParser::CreateParserWithFile");
  if (path == nullptr) return nullptr;
  const RetainPtr<CFURLRef> url = MakeURL(path, pathStyle);
  if (!url) return nullptr;
  FStreamWrapper test;
  if (!OpenFileStreamFromCFURLRef(url.get(), path, &test, readOnly)) return nullptr;
  FontParser* parser = nullptr;
  switch (DetermineFileTypeOfFile(url.get(), path)) {
    case EFileType::kPDF:
      OutputIndentedAndFormattedString(0, "PDF compatible file found");
      parser = new FontParserPDF(url.get(), path);
      break;
    case EFileType::kEPS:
      OutputIndentedAndFormattedString(0, "EPS compatible file found");
      parser = new FontParserEPS(url.get(), path, readOnly);
      break;
    case EFileType::kUnknown:
      OutputIndentedAndFormattedString(0, "Unknown file type found");
      break;
  }
  test.close();
  return parser;
}

EFileType FontParser::DetermineFileTypeOfFile(CFURLRef url, CFStringRef path) {
  constexpr long kSearchedLength = 1000;
  FStreamWrapper stream;
  // Nothing was read then, so no read failed either.
  if (!OpenFileStreamFromCFURLRef(url, path, &stream, true)) return EFileType::kEPS;
  std::array<char, 5> block{};
  for (long offset = 0; offset < kSearchedLength; offset += 4) {
    unsigned long count = 4;
    if (ReadStream(stream, &count, block.data()) != 0) return EFileType::kUnknown;
    if (std::strcmp(block.data(), "%PDF") == 0) return EFileType::kPDF;
  }
  return EFileType::kEPS;
}

CFURLPathStyle FontParser::GetDefaultSystemPathStyle() {
  return kCFURLPOSIXPathStyle;
}

EFontSource FontParser::GetSourceOfFont(CFStringRef postScriptName, EFontSource fallback) const {
  const auto found = m_sources.find(ToStdString(postScriptName));
  return found == m_sources.end() ? fallback : found->second;
}

void FontParser::NoteSource(CFStringRef postScriptName, EFontSource source) {
  m_sources[ToStdString(postScriptName)] = source;
}

void FontParser::AddNote(std::string_view note) {
  if (std::find(m_notes.begin(), m_notes.end(), note) == m_notes.end()) m_notes.emplace_back(note);
}

void FontParser::MakeArrayIfNull(CFMutableArrayRef& fonts) {
  if (fonts == nullptr) fonts = MakeArray().leakRef();
}

bool IsMacEPS(long firstWord) {
  // A long is wider than the word, and a word with its high bit set would fill it with ones.
  return __builtin_bswap32(static_cast<uint32_t>(firstWord)) >> 16 == 0x2521;
}

bool IsWindowsEPS(long firstWord) {
  return static_cast<uint32_t>(firstWord) == 0xC6D3D0C5;
}
