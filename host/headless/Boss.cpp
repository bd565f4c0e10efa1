#include "headless/Boss.h"

#include <algorithm>

namespace headless {

Boss::~Boss() {
  while (!m_vInterfaces.empty()) m_vInterfaces.pop_back();
}

void Boss::Release() {
  if (--m_nReferences == 0) delete this;
}

IPMUnknown* Boss::QueryInterface(PMIID interfaceID) {
  IPMUnknown* found = interfaceID == IID_IPMUNKNOWN ? this : Find(interfaceID);
  if (found) AddRef();
  return found;
}

bool Boss::AddInterface(PMIID interfaceID, std::unique_ptr<IPMUnknown> implementation) {
  if (Find(interfaceID)) return false;
  m_vInterfaces.emplace_back(interfaceID, std::move(implementation));
  return true;
}

bool Boss::AddInterface(const InterfaceFactory& factory) {
  return !Find(factory.interfaceID) && AddInterface(factory.interfaceID, factory.create(this));
}

void Boss::RemoveInterface(PMIID interfaceID) {
  std::erase_if(m_vInterfaces, [interfaceID](const auto& entry) { return entry.first == interfaceID; });
}

IPMUnknown* Boss::Find(PMIID interfaceID) const {
  const auto entry =
      std::find_if(m_vInterfaces.begin(), m_vInterfaces.end(),
                   [interfaceID](const auto& candidate) { return candidate.first == interfaceID; });
  return entry == m_vInterfaces.end() ? nullptr : entry->second.get();
}

}  // namespace headless
