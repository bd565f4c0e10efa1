#include "headless/OpenDocument.h"

#include <algorithm>
#include <filesystem>
#include <optional>
#include <system_error>
#include <utility>

#include "IFontFamily.h"
#include "headless/HostLink.h"
#include "headless/LinkManager.h"
#include "idml/PackageReader.h"
#include "idml/PackageWriter.h"

namespace headless {
namespace {

// What signals and plug-ins see: absolute, without "." and "..", symbolic links as they are.
std::string AbsolutePath(const std::string& path) {
  std::error_code failure;
  const std::filesystem::path absolute = std::filesystem::absolute(path, failure);
  return failure ? path : absolute.lexically_normal().string();
}

std::string MadeUpName(const std::string& family, const std::string& style) {
  PMString name(style.empty() ? family : family + "-" + style);
  name.StripWhiteSpace(PMString::kAllWhiteSpace);
  return name.GetUTF8String();
}

}  // namespace

std::unique_ptr<OpenDocument> OpenDocument::Read(const std::string& path, InstalledFonts& fonts,
                                                 std::span<const InterfaceFactory> additions,
                                                 std::string& error) {
  std::optional<idml::Document> model = idml::ReadPackage(path, error);
  if (!model) return nullptr;
  std::unique_ptr<OpenDocument> document(new OpenDocument());
  auto content = std::make_shared<DocumentContent>();
  content->file = IDFile(AbsolutePath(path));
  content->name = std::filesystem::path(content->file.GetPath()).filename().string();
  content->model = std::move(*model);
  for (std::size_t i = 0; i < content->model.families.size(); ++i) {
    content->familiesByName.emplace(content->model.families[i].name, i);
  }
  content->installedFonts = &fonts;
  document->m_pContent = content;
  document->m_pDataBase = std::make_unique<DocumentDataBase>(std::move(content), additions);
  return document;
}

UIDRef OpenDocument::Ref() const {
  return m_pDataBase ? UIDRef(m_pDataBase.get(), m_pDataBase->GetRootUID()) : UIDRef::Null();
}

void OpenDocument::RebindFamilies() {
  m_pDataBase->RebindFamilies();
}

std::vector<HeadlessHost::UsedFont> OpenDocument::UsedFonts() const {
  std::vector<HeadlessHost::UsedFont> fonts;
  InstalledFonts* installed = m_pContent->installedFonts;
  if (!installed) return fonts;
  for (const idml::UsedVariant& variant : m_pContent->model.usedVariants) {
    HeadlessHost::UsedFont font{variant.family, variant.style, {}, false, false};
    const UID uid = m_pDataBase->FamilyUID(variant.family, true);
    const InterfacePtr<IFontFamily> family(m_pDataBase.get(), uid, UseDefaultIID());
    font.postScriptName = family->GetFacePostscriptName(variant.style, true, true).GetUTF8String();
    font.hasRealName = !font.postScriptName.empty();
    if (!font.hasRealName) font.postScriptName = MadeUpName(variant.family, variant.style);
    font.available = installed->Has(font.postScriptName);
    fonts.push_back(std::move(font));
  }
  return fonts;
}

void OpenDocument::NoteAlert(bool suppressed) {
  m_alert = {};
  m_alert.suppressed = suppressed;
  m_alert.missingFonts = UsedFonts();
  std::erase_if(m_alert.missingFonts, [](const HeadlessHost::UsedFont& font) { return font.available; });
  const InterfacePtr<ILinkManager> manager(Ref(), UseDefaultIID());
  K2Vector<UID> links;
  manager->QueryLinks(LinkQuery(), links);
  for (const UID uid : links) {
    const InterfacePtr<ILink> link(m_pDataBase.get(), uid, UseDefaultIID());
    const auto status = static_cast<const HostLink*>(link.get())->Status();
    const std::string path = PathOfFileURI(link->GetURI());
    const std::string& shown = path.empty() ? link->GetURI() : path;
    if (status == Facade::ILinkFacade::kMissing) m_alert.missingLinks.push_back(shown);
    if (status == Facade::ILinkFacade::kOutOfDate) m_alert.outOfDateLinks.push_back(shown);
  }
}

bool OpenDocument::WriteAttributes(std::string& error) {
  std::map<std::string, std::string> attributes = m_pDataBase->WriteAttributes();
  auto& stored = m_pContent->model.stored;
  std::erase_if(attributes, [&stored](const auto& attribute) {
    const auto before = stored.find(attribute.first);
    return before == stored.end() ? attribute.second.empty() : before->second == attribute.second;
  });
  if (attributes.empty()) return true;
  if (!idml::StoreInPackage(m_pContent->file.GetPath(), attributes, error)) return false;
  for (auto& [name, bytes] : attributes) stored[name] = std::move(bytes);
  return true;
}

}  // namespace headless
