#pragma once

#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

#include "CPMUnknown.h"
#include "IFontFamily.h"
#include "headless/DocumentContent.h"

namespace headless {

/// A family as a document knows it: the faces of the document's font table in its order, then those that are
/// installed beyond them. What is installed is taken up when DocumentContent::fontGeneration has changed.
class FontFamily final : public CPMUnknown<IFontFamily> {
 public:
  FontFamily(IPMUnknown* boss, std::shared_ptr<const DocumentContent> content, std::string name)
      : CPMUnknown(boss), m_pContent(std::move(content)), m_sName(std::move(name)) {}

  PMString GetFamilyName() const override { return m_sName; }
  int32 GetFaceCount() const override;
  PMString GetNthFaceStyle(int32 face) const override;
  PMString GetNthFacePostscriptName(int32 face) const override;
  PMString GetFacePostscriptName(const PMString& style, bool getOnlyRealPSName,
                                 bool useDocumentFontTable) const override;

 private:
  struct Faces {
    std::vector<InstalledFonts::Face> all;
    std::unordered_map<std::string, std::string> tableNames;      // PostScript name by style.
    std::unordered_map<std::string, std::string> installedNames;  // Likewise.
    std::unordered_map<std::string, std::size_t> styles;          // Index in all by style.
  };
  const Faces& BoundFaces() const;
  void AddFace(Faces& faces, const std::string& style, const std::string& postScriptName) const;

  std::shared_ptr<const DocumentContent> m_pContent;
  std::string m_sName;
  mutable std::unique_ptr<Faces> m_pFaces;
  mutable std::uint32_t m_nBoundGeneration = 0;
};

}  // namespace headless
