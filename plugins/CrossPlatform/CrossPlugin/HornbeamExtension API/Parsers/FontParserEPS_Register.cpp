// The list of fonts of an EPS file, as it grows.
#include "Activation/Vocabulary/FontRecord.h"
#include "Activation/Vocabulary/FontRecordKeys.h"
#include "Identity/GlyphMarkSupport.h"
#include "Identity/MutableRecords.h"
#include "Memory/CFVector.h"
#include "Parsers/EPSAttributes.h"
#include "Parsers/FontParserEPS.h"
#include "Parsers/ParsedText.h"
#include "Utilities/DebugUtils.h"

void FontParserEPS::RegisterFont(const std::string& name, EFontSource source) {
  if (name.empty()) return;
  const RetainPtr<CFMutableDictionaryRef> font =
      adoptCF(GlyphMarkSupport::CreateGlyphMarkDictionary(MakeParsedText(name).get()));
  GlyphMarkSupport::ResolveDictionaryMMFontName(font.get());
  if (m_names.Find(ToStdString(FontRecord::GetPostScriptName(font.get())))) return;
  AppendFont(font.get(), source);
}

void FontParserEPS::RegisterFontWithGlyphMark(const std::string& spec) {
  const RetainPtr<CFMutableDictionaryRef> font = MakeDictionary();
  std::stringstream stream(spec);
  std::string word;
  if (stream.get() == '<' && stream >> word && word == "FONTSPEC") {
    std::string name;
    std::string value;
    while (ReadGlyphMarkAttribute(stream, name, value)) {
      if (CFStringRef key = EPSAttributes::GetKeyForAttributeName(name)) {
        CFDictionarySetValue(font.get(), key, MakeParsedText(value).get());
      }
    }
  }
  const std::string name = ToStdString(FontRecord::GetPostScriptName(font.get()));
  if (name.find(' ') != std::string::npos) {
    OutputIndentedAndFormattedString(0, "Discarding bogus postscript name:  '%s'", name.c_str());
  } else if (!name.empty()) {
    GlyphMarkSupport::ResolveDictionaryMMFontName(font.get());
    RemoveFontWithPostScriptName(FontRecord::GetPostScriptName(font.get()));
    AppendFont(font.get(), EFontSource::kSpecification);
  }
  GlyphMarkSupport::PostProcessSingleFontForSlug(font.get());
}

void FontParserEPS::RemoveFontWithPostScriptName(CFStringRef name) {
  if (name == nullptr) return;
  const std::string text = ToStdString(name);
  const std::optional<size_t> position = m_names.Find(text);
  if (!position) return;
  const CFStringRef found =
      FontRecord::GetPostScriptName(FontRecord::At(m_fonts.get(), static_cast<CFIndex>(*position)));
  if (ToStdString(found) != text) return;
  m_names.Remove(*position, text);
  m_removed[*position] = true;
  constexpr size_t kManyRemoved = 1000;
  if (++m_removedCount > kManyRemoved && m_removedCount > m_removed.size() / 2) DropRemovedFonts();
}

// Now and then, so that a font that is named anew for ever doesn't fill the memory.
void FontParserEPS::DropRemovedFonts() {
  MutableRecords::RemoveMarked(m_fonts.get(), m_removed);
  m_removed.assign(m_removed.size() - m_removedCount, false);
  m_removedCount = 0;
  m_names = FontNameIndex();
  for (size_t i = 0; i < m_removed.size(); ++i) {
    const CFDictionaryRef font = FontRecord::At(m_fonts.get(), static_cast<CFIndex>(i));
    m_names.Add(i, ToStdString(FontRecord::GetPostScriptName(font)));
  }
}

void FontParserEPS::AppendFont(CFDictionaryRef font, EFontSource source) {
  CFStringRef name = FontRecord::GetPostScriptName(font);
  m_names.Add(m_removed.size(), ToStdString(name));
  m_removed.push_back(false);
  CFArrayAppendValue(m_fonts.get(), font);
  NoteSource(name, source);
}

bool FontParserEPS::ReadGlyphMarkAttribute(std::stringstream& stream, std::string& name, std::string& value) {
  name.clear();
  value.clear();
  while (stream.peek() == ' ') stream.ignore(1);
  std::getline(stream, name, '=');
  if (stream.good()) stream.ignore(1);  // the opening quote, whatever it is
  std::getline(stream, value, '"');
  return stream.good();
}
