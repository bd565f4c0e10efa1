#pragma once

#include <optional>
#include <pugixml.hpp>
#include <string>

#include "idml/StyleSheet.h"
#include "idml/TextFormat.h"
#include "idml/UsedFonts.h"

namespace idml {

/// Finds the fonts of one story's text (a part of Stories/).
///
/// What counts is text: the characters of Content elements, the markers in them (processing instructions,
/// such as the one of a page number) and what text variables show. It may lie in tables, footnotes, notes,
/// hyperlinks, tagged elements and hidden (conditional) text. Style ranges without text and paragraph ends
/// alone use nothing; neither does text that is only kept as deleted by change tracking.
///
/// A character's font is what its CharacterStyleRange says, else the character style, else the
/// ParagraphStyleRange, else the paragraph style, family and style name each for itself. Bullets, numbers,
/// drop caps, nested styles and line styles add theirs to a paragraph that has text. Styles by GREP
/// expression are not evaluated.
class StoryReader {
 public:
  /// \param styleSheet, usedFonts  Outlive the object.
  StoryReader(const StyleSheet& styleSheet, UsedFonts& usedFonts)
      : m_styleSheet(styleSheet), m_usedFonts(usedFonts) {}

  /// \param root  The part's root element, nested no deeper than limits::kMaximumDepth.
  void Read(const pugi::xml_node& root);

 private:
  struct Paragraph {
    TextFormat format;
    bool hasText = false;
  };

  void ReadChildren(const pugi::xml_node& element, Paragraph& paragraph, const TextFormat& characters);
  void ReadParagraph(const pugi::xml_node& range);
  void NoteText(Paragraph& paragraph, const TextFormat& characters);
  void NoteStart(const Paragraph& paragraph, const std::string& family, const std::string& style);
  void NoteWithStyle(const std::optional<std::string>& characterStyle, const std::string& family,
                     const std::string& style);

  const StyleSheet& m_styleSheet;
  UsedFonts& m_usedFonts;
};

}  // namespace idml
