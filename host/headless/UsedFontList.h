#pragma once

#include <string>
#include <vector>

#include "CPMUnknown.h"
#include "IDocumentFontUsage.h"
#include "IUsedFontList.h"

namespace headless {

class DocumentDataBase;

/// The used fonts of a document's text, gathered by family: families in the order of their first use, and
/// each one's styles in theirs.
class UsedFontList final : public CPMUnknown<IUsedFontList> {
 public:
  /// \param database  Outlives every use of the object.
  UsedFontList(IPMUnknown* boss, DocumentDataBase& database) : CPMUnknown(boss), m_database(database) {}

  int32 GetFamilyCount() const override { return static_cast<int32>(m_vFamilies.size()); }
  UID GetNthFamilyUID(int32 family) const override;
  int32 GetVariantCount(int32 family) const override;
  PMString GetNthVariantStyle(int32 family, int32 variant) const override;
  void Refresh() override;
  UIDRef GetUIDRef() const override;

 private:
  struct Family {
    UID uid;
    std::vector<std::string> styles;
  };
  const Family* FamilyAt(int32 index) const;

  DocumentDataBase& m_database;
  std::vector<Family> m_vFamilies;
};

/// Looks at the document through its used-font list. Placed graphics are opaque to this host.
class DocumentFontUsage final : public CPMUnknown<IDocumentFontUsage> {
 public:
  /// \param usedFonts  An interface of the same boss.
  DocumentFontUsage(IPMUnknown* boss, UsedFontList& usedFonts) : CPMUnknown(boss), m_usedFonts(usedFonts) {}

  void UpdateFontList() override { m_usedFonts.Refresh(); }

 private:
  UsedFontList& m_usedFonts;
};

}  // namespace headless
