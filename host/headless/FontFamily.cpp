#include "headless/FontFamily.h"

namespace headless {

const FontFamily::Faces& FontFamily::BoundFaces() const {
  if (m_pFaces && m_nBoundGeneration == m_pContent->fontGeneration) return *m_pFaces;
  auto faces = std::make_unique<Faces>();
  if (const idml::FontFamily* table = m_pContent->FindFamily(m_sName)) {
    for (const idml::FontFace& face : table->faces) {
      if (!face.postScriptName.empty()) faces->tableNames.emplace(face.styleName, face.postScriptName);
      AddFace(*faces, face.styleName, face.postScriptName);
    }
  }
  if (m_pContent->installedFonts) {
    for (const InstalledFonts::Face& face : m_pContent->installedFonts->FacesOf(m_sName)) {
      if (!face.postScriptName.empty()) faces->installedNames.emplace(face.styleName, face.postScriptName);
      AddFace(*faces, face.styleName, face.postScriptName);
    }
  }
  m_pFaces = std::move(faces);
  m_nBoundGeneration = m_pContent->fontGeneration;
  return *m_pFaces;
}

// One face a style: the first that tells its name.
void FontFamily::AddFace(Faces& faces, const std::string& style, const std::string& postScriptName) const {
  const auto [entry, isNew] = faces.styles.emplace(style, faces.all.size());
  if (isNew) {
    faces.all.push_back({style, postScriptName});
  } else if (faces.all[entry->second].postScriptName.empty()) {
    faces.all[entry->second].postScriptName = postScriptName;
  }
}

int32 FontFamily::GetFaceCount() const {
  return static_cast<int32>(BoundFaces().all.size());
}

PMString FontFamily::GetNthFaceStyle(int32 face) const {
  const auto& all = BoundFaces().all;
  const auto index = static_cast<std::size_t>(face);
  return index < all.size() ? PMString(all[index].styleName) : kNullString;
}

PMString FontFamily::GetNthFacePostscriptName(int32 face) const {
  const auto& all = BoundFaces().all;
  const auto index = static_cast<std::size_t>(face);
  return index < all.size() ? PMString(all[index].postScriptName) : kNullString;
}

PMString FontFamily::GetFacePostscriptName(const PMString& style, bool getOnlyRealPSName,
                                           bool useDocumentFontTable) const {
  const Faces& faces = BoundFaces();
  if (useDocumentFontTable) {
    const auto told = faces.tableNames.find(style.GetUTF8String());
    if (told != faces.tableNames.end()) return told->second;
  }
  const auto installed = faces.installedNames.find(style.GetUTF8String());
  if (installed != faces.installedNames.end()) return installed->second;
  if (getOnlyRealPSName) return kNullString;
  PMString made(m_sName);
  made.StripWhiteSpace(PMString::kAllWhiteSpace);
  return made;
}

}  // namespace headless
