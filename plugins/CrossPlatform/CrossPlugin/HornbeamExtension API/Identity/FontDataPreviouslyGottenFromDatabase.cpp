#include "Identity/FontDataPreviouslyGottenFromDatabase.h"

#include "Activation/Vocabulary/FontRecordKeys.h"
#include "Utilities/DebugUtils.h"
#include "XCFUtils.h"

std::map<unsigned int, FontOrSetInfoRec> FontDataPreviouslyGottenFromDatabase::idToInfoRec;

namespace {

constexpr long kStateActive = 2;
constexpr long kStateTemporarilyActive = 3;

bool IsActiveFontOfName(const FontOrSetInfoRec& rec, const std::string& postScriptName) {
  if (rec.kind == FontOrSetInfoRec::kKindSet) return false;
  if (!XCFUtils::GetCFStringFromDict(rec.fontInfo, kGM_PostScriptNameKey)) return false;
  if (!XCFUtils::GetCFStringFromDict(rec.fontInfo, kGM_ActivationStateKey)) return false;
  const long state = XCFUtils::GetLongFromDictString(rec.fontInfo, kGM_ActivationStateKey);
  return (state == kStateActive || state == kStateTemporarilyActive) &&
         XCFUtils::GetStringFromDict(rec.fontInfo, kGM_PostScriptNameKey) == postScriptName;
}

}  // namespace

bool FontDataPreviouslyGottenFromDatabase::CreateCopyOfGlyphmarkDataForActiveFont(
    const std::string& postScriptName, CFMutableDictionaryRef& outFont, unsigned int& outFontID) {
  for (const auto& [fontID, rec] : idToInfoRec) {
    if (!IsActiveFontOfName(rec, postScriptName)) continue;
    OutputIndentedAndFormattedString(
        0,
        "Returning TRUE from FontDataPreviouslyGottenFromDatabase::%s('%s', ...) with version %s, "
        "GlyphMark_ActivationStatusKey=%s, GlyphMark_IsActiveKey=%s",
        __func__, postScriptName.c_str(), XCFUtils::GetStringFromDict(rec.fontInfo, kGM_VersionKey).c_str(),
        XCFUtils::GetStringFromDict(rec.fontInfo, kGM_ActivationStateKey).c_str(),
        XCFUtils::GetStringFromDict(rec.fontInfo, kGM_IsActiveKey).c_str());
    outFontID = fontID;
    outFont = CFDictionaryCreateMutableCopy(nullptr, 0, rec.fontInfo);
    return true;
  }
  return false;
}
