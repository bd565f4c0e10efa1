// The rest of a font's family, for users who want families activated as a whole.

#include "Activation/Vocabulary/FontRecord.h"
#include "Activation/Vocabulary/FontRecordKeys.h"
#include "CoreAgentInterface/CoreAgentInterface.h"
#include "CoreAgentInterface/FontIDs.h"
#include "CoreAgentInterface/Shuttle/ShuttleLoader.h"
#include "Identity/GlyphMarkSupport.h"
#include "Memory/CFCast.h"
#include "Memory/RetainPtr.h"
#include "Utilities/DebugUtils.h"
#include "Utilities/OperationTrace.h"
#include "XCFUtils.h"

namespace {

bool IsMatchedAlready(CFArrayRef matchedFonts, CFDictionaryRef font) {
  return matchedFonts != nullptr && GlyphMarkSupport::DoesArrayContainFontWithPostScriptName(
                                        matchedFonts, FontRecord::GetPostScriptName(font), nullptr);
}

// Converts an element in its place; one that can't be changed is replaced by a copy.
void ConvertAt(CFMutableArrayRef fonts, CFIndex index, CFDictionaryRef font) {
  CFMutableDictionaryRef record = dynamicCF<CFMutableDictionaryRef>(font);
  if (record != nullptr) {
    CoreAgentInterface::ConvertActivationStateValues(record);
    return;
  }
  const RetainPtr<CFMutableDictionaryRef> copy = adoptCF(CFDictionaryCreateMutableCopy(nullptr, 0, font));
  CoreAgentInterface::ConvertActivationStateValues(copy.get());
  CFArraySetValueAtIndex(fonts, index, copy.get());
}

}  // namespace

int CoreAgentInterface::FindFontsInSameFamilyForActivation(CFDictionaryRef font, CFArrayRef matchedFonts,
                                                           int workgroupID,
                                                           CFMutableArrayRef outFontsInFamily) {
  const OperationTrace trace(
      "CoreAgentInterface::FindFontsInSameFamilyForActivation",
      "Entering CoreAgentInterface::FindFontsInSameFamilyForActivation(workgroupID=%d)", workgroupID);
  if (font == nullptr || outFontsInFamily == nullptr) {
    OutputIndentedAndFormattedString(0, "*** ERROR: inFontRef and/or outFontsInFamily is NULL");
    return -1;
  }
  if (!CFDictionaryContainsKey(font, kGM_AssignedFamilyGroupIDKey)) {
    OutputIndentedAndFormattedString(0, "*** ERROR: inFontRef does not include assigned family group ID");
    return -1;
  }
  const unsigned int fontID = FontRecord::GetDatabaseID(font);
  OutputIndentedAndFormattedString(
      0,
      "Finding all fonts in current workgroup(s) with family group ID %d (\"%s\"), same as font \"%s\" "
      "(fontID "
      "%d)",
      static_cast<int>(XCFUtils::GetLongFromDictString(font, kGM_AssignedFamilyGroupIDKey)),
      XCFUtils::GetStringFromDict(font, kGM_AssignedFamilyGroupNameKey).c_str(),
      GetPostscriptName(font).c_str(), static_cast<int>(fontID));

  std::vector<unsigned int> workgroups;
  PopulateWorkgroupArray(workgroupID, workgroups);
  ShuttleLoader::GetSharedInstance()->FindFontsInSameFamilyForActivation(
      font, workgroups.data(), static_cast<unsigned long>(workgroups.size()), outFontsInFamily);

  for (CFIndex index = CFArrayGetCount(outFontsInFamily) - 1; index >= 0; --index) {
    CFDictionaryRef member = FontRecord::At(outFontsInFamily, index);
    if (member == nullptr) {
      OutputIndentedAndFormattedString(0, "ERROR:  outFontsInFamily[%d] is NULL", static_cast<int>(index));
      continue;
    }
    const unsigned int memberID = FontRecord::GetDatabaseID(member);
    if (memberID != fontID && IsMatchedAlready(matchedFonts, member)) {
      OutputIndentedAndFormattedString(
          0,
          ">>> Skipping family font \"%s\" (fontID %d), because it's a duplicate "
          "of one of the original doc font matches.",
          GetPostscriptName(member).c_str(), static_cast<int>(memberID));
      CFArrayRemoveValueAtIndex(outFontsInFamily, index);
    } else {
      ConvertAt(outFontsInFamily, index, member);
    }
  }
  return 0;
}
