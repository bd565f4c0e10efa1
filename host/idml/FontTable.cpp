#include "idml/FontTable.h"

#include <cstring>
#include <optional>

#include "idml/Limits.h"
#include "idml/XmlText.h"

namespace idml {
namespace {

std::string NameOrNothing(const pugi::xml_node& element, const char* attribute) {
  return NameProperty(element, attribute).value_or(std::string());
}

FontFace ReadFace(const pugi::xml_node& font) {
  FontFace face;
  face.styleName = NameOrNothing(font, "FontStyleName");
  face.postScriptName = NameOrNothing(font, "PostScriptName");
  face.fullName = NameOrNothing(font, "FullName");
  face.type = NameOrNothing(font, "FontType");
  face.status = NameOrNothing(font, "Status");
  return face;
}

}  // namespace

bool FontTable::Read(const pugi::xml_node& root, std::string& error) {
  for (const pugi::xml_node element : root.children()) {
    if (std::strcmp(element.name(), "FontFamily") == 0) {
      if (!AddFamily(element, error)) return false;
    } else if (std::strcmp(element.name(), "CompositeFont") == 0) {
      const std::optional<std::string> name = NameProperty(element, "Name");
      if (!name) continue;
      std::vector<UsedVariant>& entries = m_mComposites[*name];
      for (const pugi::xml_node entry : element.children("CompositeFontEntry")) {
        const std::optional<std::string> family = NameProperty(entry, "AppliedFont");
        if (family) entries.push_back({*family, NameOrNothing(entry, "FontStyle")});
      }
    }
  }
  return true;
}

bool FontTable::AddFamily(const pugi::xml_node& element, std::string& error) {
  const std::optional<std::string> familyName = NameProperty(element, "Name");
  for (const pugi::xml_node font : element.children("Font")) {
    if (++m_nFaces > limits::kMaximumFonts) {
      error = "lists more than " + std::to_string(limits::kMaximumFonts) + " fonts";
      return false;
    }
    const std::optional<std::string> name = NameProperty(font, "FontFamily");
    if (name || familyName) FamilyNamed(name ? *name : *familyName).faces.push_back(ReadFace(font));
  }
  return true;
}

FontFamily& FontTable::FamilyNamed(const std::string& name) {
  const auto [entry, isNew] = m_mFamilyIndices.emplace(name, m_vFamilies.size());
  if (isNew) m_vFamilies.push_back({name, {}});
  return m_vFamilies[entry->second];
}

const std::vector<UsedVariant>* FontTable::FindComposite(const std::string& name) const {
  const auto composite = m_mComposites.find(name);
  return composite == m_mComposites.end() ? nullptr : &composite->second;
}

}  // namespace idml
