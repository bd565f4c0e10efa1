#include "idml/TextFormat.h"

#include <utility>

#include "idml/Limits.h"
#include "idml/XmlText.h"

namespace idml {
namespace {

template <typename T>
void Inherit(T& value, const T& base) {
  if (!value) value = base;
}

std::optional<TextFormat::ListKind> ReadListKind(const pugi::xml_node& element) {
  const std::optional<std::string> kind = Property(element, "BulletsAndNumberingListType");
  if (!kind) return std::nullopt;
  if (*kind == "BulletList") return TextFormat::ListKind::kBullets;
  if (*kind == "NumberedList") return TextFormat::ListKind::kNumbers;
  return TextFormat::ListKind::kNone;
}

void AppendStylesOfList(const pugi::xml_node& list, std::vector<std::string>& styles) {
  for (const pugi::xml_node item : list.children("ListItem")) {
    if (styles.size() == limits::kMaximumNestedStyles) return;
    std::string style = item.child("AppliedCharacterStyle").text().get();
    if (IsName(style)) styles.push_back(std::move(style));
  }
}

std::shared_ptr<const std::vector<std::string>> ReadNestedStyles(const pugi::xml_node& element) {
  const pugi::xml_node properties = element.child("Properties");
  const pugi::xml_node nested = properties.child("AllNestedStyles");
  const pugi::xml_node lines = properties.child("AllLineStyles");
  if (!nested && !lines) return nullptr;
  auto styles = std::make_shared<std::vector<std::string>>();
  AppendStylesOfList(nested, *styles);
  AppendStylesOfList(lines, *styles);
  return styles;
}

}  // namespace

void TextFormat::InheritFrom(const TextFormat& base) {
  Inherit(family, base.family);
  Inherit(style, base.style);
  Inherit(listKind, base.listKind);
  Inherit(bulletFamily, base.bulletFamily);
  Inherit(bulletStyle, base.bulletStyle);
  Inherit(bulletCharacterStyle, base.bulletCharacterStyle);
  Inherit(numberCharacterStyle, base.numberCharacterStyle);
  Inherit(dropCapCharacters, base.dropCapCharacters);
  Inherit(dropCapStyle, base.dropCapStyle);
  Inherit(nestedStyles, base.nestedStyles);
}

TextFormat ReadTextFormat(const pugi::xml_node& element) {
  TextFormat format;
  format.family = NameProperty(element, "AppliedFont");
  format.style = NameProperty(element, "FontStyle");
  // The form of the host's scripts, a family and a style in one, may stand in a document that a script made.
  if (const std::optional<std::string> both = Property(element, "AppliedFont"); both && !format.family) {
    const std::size_t tab = both->find('\t');
    if (tab != std::string::npos && IsName(both->substr(0, tab)) && IsName(both->substr(tab + 1))) {
      format.family = both->substr(0, tab);
      if (!format.style) format.style = both->substr(tab + 1);
    }
  }
  format.listKind = ReadListKind(element);
  format.bulletFamily = NameProperty(element, "BulletsFont");
  format.bulletStyle = NameProperty(element, "BulletsFontStyle");
  format.bulletCharacterStyle = NameProperty(element, "BulletsCharacterStyle");
  format.numberCharacterStyle = NameProperty(element, "NumberingCharacterStyle");
  if (const pugi::xml_attribute characters = element.attribute("DropCapCharacters")) {
    format.dropCapCharacters = characters.as_int();
  }
  format.dropCapStyle = NameProperty(element, "DropCapStyle");
  format.nestedStyles = ReadNestedStyles(element);
  return format;
}

}  // namespace idml
