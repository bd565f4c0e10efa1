#pragma once

#include "CPMUnknown.h"
#include "IDocFontMgr.h"

namespace headless {

class DocumentDataBase;

/// The families of one document.
class DocumentFontManager final : public CPMUnknown<IDocFontMgr> {
 public:
  /// \param database  Outlives every use of the object.
  DocumentFontManager(IPMUnknown* boss, DocumentDataBase& database)
      : CPMUnknown(boss), m_database(database) {}

  UID GetFamilyUID(const PMString& familyName, const PMString& style, bool addIfMissing,
                   bool rebind) override;

 private:
  DocumentDataBase& m_database;
};

}  // namespace headless
