#include "idml/StoryReader.h"

#include <string_view>

namespace idml {
namespace {

bool HasText(const pugi::xml_node& content) {
  for (const pugi::xml_node child : content.children()) {
    const bool isMarker = child.type() == pugi::node_pi;
    const bool isText = child.type() == pugi::node_pcdata || child.type() == pugi::node_cdata;
    if (isMarker || (isText && *child.value())) return true;
  }
  return false;
}

bool IsDeletedText(const pugi::xml_node& element) {
  return std::string_view(element.name()) == "Change" &&
         std::string_view(element.attribute("ChangeType").value()) == "DeletedText";
}

}  // namespace

void StoryReader::Read(const pugi::xml_node& root) {
  Paragraph paragraph;
  paragraph.format = m_styleSheet.ParagraphFormat({});
  ReadChildren(root, paragraph, {});
}

void StoryReader::ReadChildren(const pugi::xml_node& element, Paragraph& paragraph,
                               const TextFormat& characters) {
  for (const pugi::xml_node child : element.children()) {
    const std::string_view name = child.name();
    if (name == "Content") {
      if (HasText(child)) NoteText(paragraph, characters);
    } else if (name == "TextVariableInstance") {
      if (*child.attribute("ResultText").value()) NoteText(paragraph, characters);
    } else if (name == "ParagraphStyleRange") {
      ReadParagraph(child);
    } else if (name == "CharacterStyleRange") {
      TextFormat format = ReadTextFormat(child);
      format.InheritFrom(m_styleSheet.CharacterFormat(child.attribute("AppliedCharacterStyle").value()));
      ReadChildren(child, paragraph, format);
    } else if (!IsDeletedText(child)) {
      ReadChildren(child, paragraph, characters);
    }
  }
}

void StoryReader::ReadParagraph(const pugi::xml_node& range) {
  Paragraph paragraph;
  paragraph.format = ReadTextFormat(range);
  paragraph.format.InheritFrom(
      m_styleSheet.ParagraphFormat(range.attribute("AppliedParagraphStyle").value()));
  ReadChildren(range, paragraph, {});
}

void StoryReader::NoteText(Paragraph& paragraph, const TextFormat& characters) {
  const auto& family = characters.family ? characters.family : paragraph.format.family;
  const auto& style = characters.style ? characters.style : paragraph.format.style;
  if (!paragraph.hasText) NoteStart(paragraph, family.value_or(""), style.value_or(""));
  paragraph.hasText = true;
  m_usedFonts.Add(family.value_or(""), style.value_or(""));
}

// A bullet or number looks like the paragraph's first character where nothing else is said.
void StoryReader::NoteStart(const Paragraph& paragraph, const std::string& family, const std::string& style) {
  const TextFormat& format = paragraph.format;
  if (format.listKind == TextFormat::ListKind::kBullets && format.bulletFamily) {
    // A font that is remembered with its bullet wins over the character style.
    m_usedFonts.Add(*format.bulletFamily, format.bulletStyle.value_or(style));
  } else if (format.listKind == TextFormat::ListKind::kBullets) {
    NoteWithStyle(format.bulletCharacterStyle, family, style);
  } else if (format.listKind == TextFormat::ListKind::kNumbers) {
    NoteWithStyle(format.numberCharacterStyle, family, style);
  }
  const std::string base = format.family.value_or("");
  const std::string baseStyle = format.style.value_or("");
  if (format.dropCapCharacters.value_or(0) > 0 && format.dropCapStyle) {
    NoteWithStyle(format.dropCapStyle, base, baseStyle);
  }
  if (format.nestedStyles) {
    for (const std::string& nested : *format.nestedStyles) NoteWithStyle(nested, base, baseStyle);
  }
}

void StoryReader::NoteWithStyle(const std::optional<std::string>& characterStyle, const std::string& family,
                                const std::string& style) {
  const TextFormat& format = m_styleSheet.CharacterFormat(characterStyle.value_or(""));
  m_usedFonts.Add(format.family.value_or(family), format.style.value_or(style));
}

}  // namespace idml
