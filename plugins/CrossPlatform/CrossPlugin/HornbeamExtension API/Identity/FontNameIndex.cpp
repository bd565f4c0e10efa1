#include "Identity/FontNameIndex.h"

#include <utility>

#include "Identity/PostScriptNames.h"

namespace {

// The form under which a name stands at the level of that number.
std::string FormOf(const std::string& name, size_t level) {
  return level == 0 ? name : GFontToolUtils_StripCharsAndNormalizeString(name, level == 2);
}

}  // namespace

void FontNameIndex::Add(size_t position, const std::string& name) {
  for (size_t level = 0; level < m_forms.size(); ++level) {
    AddForm(m_forms[level], FormOf(name, level), position);
  }
}

void FontNameIndex::Remove(size_t position, const std::string& name) {
  for (size_t level = 0; level < m_forms.size(); ++level) {
    RemoveForm(m_forms[level], FormOf(name, level), position);
  }
}

void FontNameIndex::Rename(size_t position, const std::string& oldName, const std::string& newName) {
  if (oldName == newName) return;
  for (size_t level = 0; level < m_forms.size(); ++level) {
    const std::string oldForm = FormOf(oldName, level);
    const std::string newForm = FormOf(newName, level);
    if (oldForm == newForm) continue;
    RemoveForm(m_forms[level], oldForm, position);
    AddForm(m_forms[level], newForm, position);
  }
}

std::optional<size_t> FontNameIndex::Find(const std::string& name) const {
  for (size_t level = 0; level < m_forms.size(); ++level) {
    const auto found = m_forms[level].find(FormOf(name, level));
    if (found != m_forms[level].end()) return found->second.lowest;
  }
  return std::nullopt;
}

void FontNameIndex::AddForm(Forms& forms, const std::string& form, size_t position) {
  const auto [entry, isNew] = forms.try_emplace(form, Positions{position, {}});
  if (isNew) return;
  Positions& positions = entry->second;
  if (position < positions.lowest) std::swap(position, positions.lowest);
  positions.others.insert(position);
}

void FontNameIndex::RemoveForm(Forms& forms, const std::string& form, size_t position) {
  const auto entry = forms.find(form);
  if (entry == forms.end()) return;
  Positions& positions = entry->second;
  std::set<size_t>& others = positions.others;
  if (positions.lowest != position) {
    others.erase(position);
  } else if (others.empty()) {
    forms.erase(entry);
  } else {
    positions.lowest = *others.begin();
    others.erase(others.begin());
  }
}
