#include "headless/DocumentDataBase.h"

#include <array>
#include <cstdio>
#include <utility>

#include "headless/DocumentFontManager.h"
#include "headless/FontFamily.h"
#include "headless/HostDocument.h"
#include "headless/HostLink.h"
#include "headless/LinkManager.h"
#include "headless/MemoryStream.h"
#include "headless/UsedFontList.h"

namespace headless {
namespace {

std::string AttributeName(ImplementationID implementationID) {
  std::array<char, 32> name;
  std::snprintf(name.data(), name.size(), "attribute-%08x", implementationID);
  return name.data();
}

}  // namespace

DocumentDataBase::DocumentDataBase(std::shared_ptr<DocumentContent> content,
                                   std::span<const InterfaceFactory> additions)
    : m_pContent(std::move(content)),
      m_vAdditions(additions.begin(), additions.end()),
      m_nNextUID(kWorkSpaceUID.Get() + 1) {
  m_pContent->database = this;
  Boss& document = AddObject(kRootUID);
  document.Emplace<HostDocument>(m_pContent, UIDRef(this, kWorkSpaceUID));
  AddObject(kWorkSpaceUID).Emplace<DocumentFontManager>(*this);
  auto* links = document.Emplace<LinkManager>();
  for (const idml::Link& link : m_pContent->model.links) {
    const UID uid(m_nNextUID++);
    AddObject(uid).Emplace<HostLink>(link);
    links->Add(uid);
  }
  auto* usedFonts = document.Emplace<UsedFontList>(*this);
  usedFonts->Refresh();
  document.Emplace<DocumentFontUsage>(*usedFonts);
  for (const InterfaceFactory& addition : m_vAdditions) document.AddInterface(addition);
  ReadAttributes();
}

DocumentDataBase::~DocumentDataBase() {
  TakeDown();
}

void DocumentDataBase::TakeDown() {
  m_pContent->database = nullptr;
  m_pContent->installedFonts = nullptr;
  // Objects may ask for others while they go: by then there are none.
  auto objects = std::exchange(m_mObjects, {});
  m_mFamilyUIDs.clear();
}

Boss& DocumentDataBase::AddObject(UID uid) {
  Boss* object = new Boss();
  m_mObjects.emplace(uid.Get(), InterfacePtr<Boss>(object));
  return *object;
}

IPMUnknown* DocumentDataBase::QueryInstance(UID uid, PMIID interfaceID) {
  const auto object = m_mObjects.find(uid.Get());
  return object == m_mObjects.end() ? nullptr : object->second->QueryInterface(interfaceID);
}

const IDFile* DocumentDataBase::GetSysFile() const {
  return m_pContent->file.IsEmpty() ? nullptr : &m_pContent->file;
}

UID DocumentDataBase::FamilyUID(const std::string& name, bool add) {
  if (const auto found = m_mFamilyUIDs.find(name); found != m_mFamilyUIDs.end()) return found->second;
  if (!add || m_mObjects.empty()) return kInvalidUID;
  const UID uid(m_nNextUID++);
  AddObject(uid).Emplace<FontFamily>(m_pContent, name);
  m_mFamilyUIDs.emplace(name, uid);
  return uid;
}

void DocumentDataBase::ReadAttributes() {
  for (const InterfaceFactory& addition : m_vAdditions) {
    if (!addition.readWrite) continue;
    const auto stored = m_pContent->model.stored.find(AttributeName(addition.implementationID));
    if (stored == m_pContent->model.stored.end()) continue;
    const InterfacePtr<IPMUnknown> attribute(QueryInstance(kRootUID, addition.interfaceID));
    MemoryStream stream(stored->second);
    if (attribute) addition.readWrite(attribute.get(), &stream, addition.implementationID);
  }
}

std::map<std::string, std::string> DocumentDataBase::WriteAttributes() {
  std::map<std::string, std::string> attributes;
  for (const InterfaceFactory& addition : m_vAdditions) {
    if (!addition.readWrite) continue;
    const InterfacePtr<IPMUnknown> attribute(QueryInstance(kRootUID, addition.interfaceID));
    if (!attribute) continue;
    MemoryStream stream;
    addition.readWrite(attribute.get(), &stream, addition.implementationID);
    attributes.emplace(AttributeName(addition.implementationID), stream.Bytes());
  }
  return attributes;
}

}  // namespace headless
