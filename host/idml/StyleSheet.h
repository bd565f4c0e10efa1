#pragma once

#include <pugixml.hpp>
#include <string>
#include <string_view>
#include <unordered_map>

#include "idml/TextFormat.h"

namespace idml {

/// The paragraph and character styles of Resources/Styles.xml with their inheritance worked out.
///
/// A style is named by its Self, as in "ParagraphStyle/Head 1", also for one within style groups. BasedOn
/// names the same way, or by the plain name for the styles that every document has
/// ("$ID/[No paragraph style]"); in a package put together from several, such a name means the style of the
/// same origin, as their identifiers begin alike.
class StyleSheet {
 public:
  /// Reads all styles of a part.
  ///
  /// \param error  Says on failure what is wrong.
  /// \return false when styles inherit in a circle or are more than limits::kMaximumStyles; nothing is then
  /// to
  ///         be asked of the object.
  bool Read(const pugi::xml_node& root, std::string& error);

  /// All that a style says, inherited or itself. An unknown style says what every document's root style says:
  /// for a paragraph that is [No paragraph style], for characters nothing.
  const TextFormat& ParagraphFormat(const std::string& self) const;
  const TextFormat& CharacterFormat(const std::string& self) const;

 private:
  struct Style {
    TextFormat format;
    std::string basedOn;
    enum { kUnresolved, kInHand, kResolved } state = kUnresolved;
  };
  using Styles = std::unordered_map<std::string, Style>;

  void Add(const pugi::xml_node& element, std::string_view kind);
  static Style* FindBase(Styles& styles, const Style& style);
  static bool ResolveAll(Styles& styles, std::string& error);
  static bool Resolve(Styles& styles, const std::string& self, std::string& error);

  Styles m_paragraphStyles;
  Styles m_characterStyles;
  TextFormat m_rootFormat;
  TextFormat m_noFormat;
};

}  // namespace idml
