#pragma once

#include <memory>
#include <string>
#include <vector>

#include "Memory/CFVector.h"
#include "Parsers/FontParser.h"
#include "Utilities/DebugUtils.h"
#include "support/FontRecords.h"
#include "support/TemporaryFolder.h"

/// What a parser says of a file.
struct PdfFonts {
  int error = 0;
  std::vector<std::string> names;
  std::vector<EFontSource> sources;
  std::vector<std::string> notes;
  std::vector<std::string> trace;
  RetainPtr<CFMutableArrayRef> records;

  bool Traced(const std::string& text) const {
    for (const std::string& line : trace) {
      if (line.find(text) != std::string::npos) return true;
    }
    return false;
  }
};

using Names = std::vector<std::string>;

/// The names as one text, with a blank between them; for tables.
inline std::string Joined(const Names& names) {
  std::string text;
  for (const std::string& name : names) text += (text.empty() ? "" : " ") + name;
  return text;
}

inline PdfFonts ReadPdfFile(const std::string& path, bool bWantGlyphMark = true) {
  PdfFonts result;
  DebugUtils::SetTraceSink(
      [](int, const char* line, void* lines) {
        static_cast<std::vector<std::string>*>(lines)->emplace_back(line);
      },
      &result.trace);
  const std::unique_ptr<FontParser> parser(FontParser::CreateParserWithFile(
      ToCFString(path).get(), true, FontParser::GetDefaultSystemPathStyle()));
  if (!parser) throw std::runtime_error("No parser for " + path);
  parser->Parse();
  CFMutableArrayRef records = nullptr;
  parser->GetObsoleteGlyphmarkData(bWantGlyphMark, records);
  DebugUtils::SetTraceSink(nullptr, nullptr);
  result.records = adoptCF(records);
  result.error = parser->GetError();
  result.notes = parser->GetNotes();
  result.names = FontNamesOf(records);
  for (CFIndex i = 0; i < FontRecord::Count(records); ++i) {
    CFStringRef name = FontRecord::GetPostScriptName(FontRecord::At(records, i));
    result.sources.push_back(parser->GetSourceOfFont(name, EFontSource::kComment));
  }
  return result;
}

inline PdfFonts ReadPdf(std::string_view bytes, bool bWantGlyphMark = true) {
  const TemporaryFolder folder;
  return ReadPdfFile(folder.Write("file.pdf", bytes), bWantGlyphMark);
}
