#include "HBInDesignUtils.h"

#include "IDataBase.h"
#include "ISession.h"

namespace HBInDesignUtils {

bool GetFullPathFromDocumentUIDRef(const UIDRef& document, std::string& outPath) {
  IDataBase* database = document.GetDataBase();
  const IDFile* file = database == nullptr ? nullptr : database->GetSysFile();
  if (file == nullptr || file->IsEmpty()) {
    return false;
  }
  outPath = file->GetPath();
  return true;
}

std::string GetPathForLog(const UIDRef& document) {
  std::string path;
  GetFullPathFromDocumentUIDRef(document, path);
  return path;
}

InterfacePtr<IFontMgr> QueryFontMgr() {
  return {GetExecutionContextSession(), UseDefaultIID()};
}

bool HostHasFont(IFontMgr& fontMgr, const std::string& postscriptName) {
  InterfacePtr<IPMFont> font(fontMgr.QueryFont(postscriptName, IFontMgr::kNoSubstitution));
  return static_cast<bool>(font);
}

void ReadFontChangeSeed(int& seed) {
  if (InterfacePtr<IFontMgr> fontMgr = QueryFontMgr(); fontMgr) {
    seed = fontMgr->GetFontChangeSeed(true, false);
  }
}

}  // namespace HBInDesignUtils
