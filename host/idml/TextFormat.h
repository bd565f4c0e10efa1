#pragma once

#include <memory>
#include <optional>
#include <pugixml.hpp>
#include <string>
#include <vector>

namespace idml {

/// The properties of a style or a style range that decide on fonts; what isn't set is inherited. References
/// to styles are kept as the document writes them.
struct TextFormat {
  enum class ListKind { kNone, kBullets, kNumbers };

  std::optional<std::string> family;  ///< AppliedFont
  std::optional<std::string> style;   ///< FontStyle
  std::optional<ListKind> listKind;   ///< BulletsAndNumberingListType
  std::optional<std::string> bulletFamily;
  std::optional<std::string> bulletStyle;
  std::optional<std::string> bulletCharacterStyle;
  std::optional<std::string> numberCharacterStyle;
  std::optional<int> dropCapCharacters;
  std::optional<std::string> dropCapStyle;
  /// Character styles that the paragraph puts on its beginning by itself (AllNestedStyles, AllLineStyles), at
  /// most limits::kMaximumNestedStyles. Shared, since every style based on this one has the same list.
  std::shared_ptr<const std::vector<std::string>> nestedStyles;

  /// Takes from `base` what isn't set here.
  void InheritFrom(const TextFormat& base);
};

/// Reads what a ParagraphStyle, CharacterStyle, ParagraphStyleRange or CharacterStyleRange says itself.
TextFormat ReadTextFormat(const pugi::xml_node& element);

}  // namespace idml
