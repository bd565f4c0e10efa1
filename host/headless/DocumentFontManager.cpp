#include "headless/DocumentFontManager.h"

#include "IFontFamily.h"
#include "headless/DocumentDataBase.h"

namespace headless {
namespace {

bool HasStyle(const IFontFamily& family, const PMString& style) {
  for (int32 face = 0; face < family.GetFaceCount(); ++face) {
    if (family.GetNthFaceStyle(face) == style) return true;
  }
  return false;
}

}  // namespace

UID DocumentFontManager::GetFamilyUID(const PMString& familyName, const PMString& style, bool addIfMissing,
                                      bool rebind) {
  const std::string& name = familyName.GetUTF8String();
  // The font table's families are the document's own, whether text uses them or not.
  const bool isKnown = m_database.Content().FindFamily(name) != nullptr;
  const UID uid = m_database.FamilyUID(name, addIfMissing || isKnown);
  if (rebind) m_database.RebindFamilies();
  if (style.IsEmpty()) return uid;
  const InterfacePtr<IFontFamily> family(&m_database, uid, UseDefaultIID());
  return family && HasStyle(*family.get(), style) ? uid : kInvalidUID;
}

}  // namespace headless
