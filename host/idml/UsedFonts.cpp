#include "idml/UsedFonts.h"

namespace idml {

void UsedFonts::Add(const std::string& family, const std::string& style) {
  if (family.empty()) return;
  const std::vector<UsedVariant>* parts = m_fontTable.FindComposite(family);
  if (!parts) {
    AddPlain(family, style);
  } else if (m_composites.insert(family).second) {
    for (const UsedVariant& part : *parts) AddPlain(part.family, part.style);
  }
}

void UsedFonts::AddPlain(const std::string& family, const std::string& style) {
  if (m_seen.insert(family + '\n' + style).second) m_vVariants.push_back({family, style});
}

}  // namespace idml
