#include "FontsReport.h"

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <memory>

#include "Activation/Vocabulary/FontRecord.h"
#include "Activation/Vocabulary/FontRecordKeys.h"
#include "FontsCommand.h"
#include "JsonText.h"
#include "Memory/CFVector.h"
#include "Parsers/FontParser.h"
#include "Parsers/FontParserPDF.h"
#include "Parsers/ParsedText.h"
#include "Utf8Text.h"

namespace {

const char* NameOf(EFontSource source) {
  switch (source) {
    case EFontSource::kComment:
      return "comment";
    case EFontSource::kSpecification:
      return "specification";
    case EFontSource::kSubset:
      return "subset";
    case EFontSource::kPageResources:
      return "page resources";
    case EFontSource::kXMPList:
      return "XMP list";
    case EFontSource::kIllustratorData:
      return "Illustrator data";
  }
  return "";
}

struct Field {
  std::string key;
  std::string value;
};

struct Font {
  std::string name;
  const char* source;
  std::vector<Field> fields;
};

struct Reading {
  const char* kind = "unknown";
  std::vector<Font> fonts;
  std::vector<std::string> notes;
};

std::vector<Field> FieldsOf(CFDictionaryRef record) {
  const auto count = static_cast<size_t>(CFDictionaryGetCount(record));
  std::vector<const void*> keys(count);
  std::vector<const void*> values(count);
  CFDictionaryGetKeysAndValues(record, keys.data(), values.data());
  std::vector<Field> fields;
  for (size_t i = 0; i < count; ++i) {
    if (CFEqual(keys[i], kGM_PostScriptNameKey)) continue;
    fields.push_back({ToStdString(keys[i]), ToStdString(values[i])});
  }
  return fields;
}

Reading ReadFonts(const std::string& path, bool wantGlyphMark) {
  Reading reading;
  // A path that isn't UTF-8 stays reachable where the file system's own encoding is Latin-1.
  const std::unique_ptr<FontParser> parser(FontParser::CreateParserWithFile(
      MakeParsedText(path).get(), true, FontParser::GetDefaultSystemPathStyle()));
  if (!parser) return reading;
  const bool isPDF = dynamic_cast<FontParserPDF*>(parser.get()) != nullptr;
  reading.kind = isPDF ? "PDF" : "EPS";
  parser->Parse();
  const RetainPtr<CFMutableArrayRef> fonts = MakeArray();
  CFMutableArrayRef target = fonts.get();
  parser->GetObsoleteGlyphmarkData(wantGlyphMark, target);
  const EFontSource usual = isPDF ? EFontSource::kPageResources : EFontSource::kComment;
  for (const auto& record : ToVector<CFDictionaryRef>(fonts.get())) {
    CFStringRef name = FontRecord::GetPostScriptName(record.get());
    if (name == nullptr || CFStringGetLength(name) == 0) continue;
    reading.fonts.push_back(
        {ToStdString(name), NameOf(parser->GetSourceOfFont(name, usual)), FieldsOf(record.get())});
  }
  reading.notes = parser->GetNotes();
  return reading;
}

std::string AsJson(const std::string& path, const Reading& reading) {
  JsonText json;
  json.BeginObject();
  json.Key("file").String(path);
  json.Key("kind").String(reading.kind);
  json.Key("fonts").BeginArray();
  for (const Font& font : reading.fonts) {
    json.BeginObject();
    json.Key("postScriptName").String(font.name);
    json.Key("source").String(font.source);
    for (const Field& field : font.fields) json.Key(field.key).String(field.value);
    json.EndObject();
  }
  json.EndArray();
  json.Key("notes").BeginArray();
  for (const std::string& note : reading.notes) json.String(note);
  json.EndArray().EndObject();
  return json.Text() + "\n";
}

std::string AsText(const std::string& path, const Reading& reading) {
  std::string text = PrintableText(path) + ": " + reading.kind;
  for (const std::string& note : reading.notes) text += ", " + note;
  text += reading.fonts.empty() ? ", no fonts\n" : "\n";
  for (const Font& font : reading.fonts) {
    text += "  " + PrintableText(font.name) + "  (" + font.source + ")\n";
    for (const Field& field : font.fields) {
      text += "      " + field.key + ": " + PrintableText(field.value) + "\n";
    }
  }
  return text;
}

}  // namespace

FontsReport ReadFontsReport(const std::string& path, const FontsOptions& options) {
  FontsReport report;
  Reading reading;
  report.problem = WhyUnreadable(path);
  if (report.problem.empty()) {
    reading = ReadFonts(path, options.glyphMark);
  } else {
    reading.notes.emplace_back("can't be read");
  }
  report.fontCount = reading.fonts.size();
  if (options.json) {
    report.text = AsJson(path, reading);
  } else if (report.problem.empty()) {
    report.text = AsText(path, reading);
  }
  return report;
}

std::string WhyUnreadable(const std::string& path) {
  std::error_code error;
  const std::filesystem::file_status status = std::filesystem::status(path, error);
  if (error) return path + ": " + error.message();
  if (std::filesystem::is_directory(status)) return path + ": is a folder";
  if (!std::filesystem::is_regular_file(status)) return path + ": is no file of bytes";
  FileBuffer file;
  if (!file.Open(path.c_str(), std::ios_base::in)) return path + ": " + std::strerror(errno);
  return "";
}
