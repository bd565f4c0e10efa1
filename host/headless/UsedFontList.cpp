#include "headless/UsedFontList.h"

#include <unordered_map>

#include "headless/DocumentDataBase.h"

namespace headless {

void UsedFontList::Refresh() {
  m_vFamilies.clear();
  std::unordered_map<std::string, std::size_t> indices;
  for (const idml::UsedVariant& variant : m_database.Content().model.usedVariants) {
    const auto [entry, isNew] = indices.emplace(variant.family, m_vFamilies.size());
    if (isNew) m_vFamilies.push_back({m_database.FamilyUID(variant.family, true), {}});
    m_vFamilies[entry->second].styles.push_back(variant.style);
  }
}

const UsedFontList::Family* UsedFontList::FamilyAt(int32 index) const {
  const auto at = static_cast<std::size_t>(index);
  return at < m_vFamilies.size() ? &m_vFamilies[at] : nullptr;
}

UID UsedFontList::GetNthFamilyUID(int32 family) const {
  const Family* found = FamilyAt(family);
  return found ? found->uid : kInvalidUID;
}

int32 UsedFontList::GetVariantCount(int32 family) const {
  const Family* found = FamilyAt(family);
  return found ? static_cast<int32>(found->styles.size()) : 0;
}

PMString UsedFontList::GetNthVariantStyle(int32 family, int32 variant) const {
  const Family* found = FamilyAt(family);
  const auto at = static_cast<std::size_t>(variant);
  return found && at < found->styles.size() ? PMString(found->styles[at]) : kNullString;
}

UIDRef UsedFontList::GetUIDRef() const {
  return {&m_database, m_database.GetRootUID()};
}

}  // namespace headless
