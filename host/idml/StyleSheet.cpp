#include "idml/StyleSheet.h"

#include <cstring>
#include <utility>
#include <vector>

#include "idml/Limits.h"
#include "idml/XmlText.h"

namespace idml {
namespace {

constexpr std::string_view kParagraphKind = "ParagraphStyle";
constexpr std::string_view kCharacterKind = "CharacterStyle";
constexpr const char* kRootParagraphStyle = "ParagraphStyle/$ID/[No paragraph style]";

// The identifier of the style that an element is based on, or nothing.
std::string ReadBasedOn(const pugi::xml_node& element, std::string_view kind) {
  const pugi::xml_node property = element.child("Properties").child("BasedOn");
  const pugi::xml_attribute attribute = element.attribute("BasedOn");
  std::string value = attribute ? attribute.value() : property.text().get();
  if (value.empty() || value == "n") return {};
  if (value.find(kind) != std::string::npos && value.find('/') != std::string::npos) return value;
  const std::string self = element.attribute("Self").value();
  const std::size_t kindAt = self.find(std::string(kind) + '/');
  const std::string origin = kindAt == std::string::npos ? std::string() : self.substr(0, kindAt);
  return origin + std::string(kind) + '/' + value;
}

}  // namespace

bool StyleSheet::Read(const pugi::xml_node& root, std::string& error) {
  // Depth is bounded by XmlPart, and groups hold groups: walk without recursion all the same.
  std::vector<pugi::xml_node> open{root};
  while (!open.empty()) {
    const pugi::xml_node node = open.back();
    open.pop_back();
    for (const pugi::xml_node child : node.children()) {
      if (child.name() == kParagraphKind || child.name() == kCharacterKind) {
        Add(child, child.name());
        if (m_paragraphStyles.size() + m_characterStyles.size() > limits::kMaximumStyles) {
          error = "has more than " + std::to_string(limits::kMaximumStyles) + " styles";
          return false;
        }
      } else if (std::strstr(child.name(), "StyleGroup")) {
        open.push_back(child);
      }
    }
  }
  if (!ResolveAll(m_paragraphStyles, error) || !ResolveAll(m_characterStyles, error)) return false;
  const auto rootStyle = m_paragraphStyles.find(kRootParagraphStyle);
  if (rootStyle != m_paragraphStyles.end()) m_rootFormat = rootStyle->second.format;
  return true;
}

void StyleSheet::Add(const pugi::xml_node& element, std::string_view kind) {
  const std::string self = element.attribute("Self").value();
  if (!IsName(self)) return;
  Styles& styles = kind == kParagraphKind ? m_paragraphStyles : m_characterStyles;
  Style style;
  style.format = ReadTextFormat(element);
  style.basedOn = ReadBasedOn(element, kind);
  styles.emplace(self, std::move(style));
}

bool StyleSheet::ResolveAll(Styles& styles, std::string& error) {
  for (const auto& entry : styles) {
    if (!Resolve(styles, entry.first, error)) return false;
  }
  return true;
}

StyleSheet::Style* StyleSheet::FindBase(Styles& styles, const Style& style) {
  if (style.basedOn.empty()) return nullptr;
  const auto base = styles.find(style.basedOn);
  return base == styles.end() ? nullptr : &base->second;
}

bool StyleSheet::Resolve(Styles& styles, const std::string& self, std::string& error) {
  std::vector<Style*> chain;
  for (Style* style = &styles.at(self); style && style->state != Style::kResolved;
       style = FindBase(styles, *style)) {
    if (style->state == Style::kInHand) {
      error = "style \"" + self + "\" is based on itself";
      return false;
    }
    style->state = Style::kInHand;
    chain.push_back(style);
  }
  for (auto style = chain.rbegin(); style != chain.rend(); ++style) {
    if (const Style* base = FindBase(styles, **style)) (*style)->format.InheritFrom(base->format);
    (*style)->state = Style::kResolved;
  }
  return true;
}

const TextFormat& StyleSheet::ParagraphFormat(const std::string& self) const {
  const auto style = m_paragraphStyles.find(self);
  return style == m_paragraphStyles.end() ? m_rootFormat : style->second.format;
}

const TextFormat& StyleSheet::CharacterFormat(const std::string& self) const {
  const auto style = m_characterStyles.find(self);
  return style == m_characterStyles.end() ? m_noFormat : style->second.format;
}

}  // namespace idml
