// What changes the set of active fonts. Every call of the library runs under the retry rule.

#include <algorithm>
#include <unordered_set>

#include "Activation/State/HornbeamGlobals.h"
#include "Activation/Vocabulary/FontRecord.h"
#include "Activation/Vocabulary/WorkgroupRecord.h"
#include "CoreAgentInterface/CoreAgentInterface.h"
#include "CoreAgentInterface/FontIDs.h"
#include "CoreAgentInterface/Shuttle/ShuttleLoader.h"
#include "GErrorCodes.h"
#include "LoomInterface/LoomInterface.h"
#include "LoomInterface/PreferenceKeys.h"
#include "Memory/RetainPtr.h"
#include "Utilities/DebugUtils.h"
#include "Utilities/OperationTrace.h"
#include "XCFUtils.h"

namespace {

// For whom fonts are activated: for this application, for the whole system, or both; never for nobody.
struct ActivationMode {
  bool local = false;
  bool global = false;
};

ActivationMode ReadActivationMode() {
  ActivationMode mode;
  if (const LoomInterface* loom = HornbeamGlobals::GetSharedLoomInterface()) {
    mode.local = loom->GetPreferenceForKey(kActivateLocallyPrefKey);
    mode.global = loom->GetPreferenceForKey(kActivateGloballyPrefKey);
  }
  if (!mode.local) mode.global = true;
  return mode;
}

// Status 0 or "not done": what activation calls report upwards.
int Flatten(unsigned int status) {
  return status == 0 ? 0 : -1;
}

// The first `count` of the array, whatever count the library reported.
std::vector<unsigned int> TakeFirst(const std::vector<unsigned int>& ids, unsigned int count) {
  return {ids.begin(), ids.begin() + static_cast<ptrdiff_t>(std::min<size_t>(count, ids.size()))};
}

void AppendFontsWithIDs(CFArrayRef fonts, const std::vector<unsigned int>& ids, CFMutableArrayRef outFonts) {
  const std::unordered_set<unsigned int> wanted(ids.begin(), ids.end());
  for (CFIndex index = 0; index < CFArrayGetCount(fonts); ++index) {
    CFDictionaryRef font = FontRecord::At(fonts, index);
    if (font != nullptr && wanted.contains(FontRecord::GetDatabaseID(font)))
      CFArrayAppendValue(outFonts, font);
  }
}

}  // namespace

int CoreAgentInterface::ActivateDocumentFontsByPath(const char* documentPath, CFArrayRef fonts,
                                                    CFMutableArrayRef matchedFontData,
                                                    CFMutableArrayRef problemFontData) {
  OperationTrace trace("CoreAgentInterface::ActivateDocumentFontsByPath",
                       "Entering CoreAgentInterface::ActivateDocumentFontsByPath('%s')",
                       documentPath == nullptr ? "" : documentPath);
  const LoomInterface* loom = HornbeamGlobals::GetSharedLoomInterface();
  if (loom == nullptr) return -1;
  const bool activateEntireFamily = loom->GetActivateEntireFamily();
  const bool pickBestMatch = loom->GetPickBestMatch();
  const bool nextGen = loom->isHostAppUsingNextGenPlugin();
  const bool glyphMarkEnabled = loom->GetEnabledGlyphMark();
  int workgroup = GetCurrentWorkgroupID();
  if (IsAllWorkgroups(workgroup)) workgroup = static_cast<int>(kCoreAgentAllWorkgroups);

  const unsigned int status = CallUnderRetryRule([=] {
    return ShuttleLoader::GetSharedInstance()->ActivateDocumentFontsByPath(
        documentPath, fonts, nextGen, activateEntireFamily, pickBestMatch, glyphMarkEnabled, workgroup,
        matchedFontData, problemFontData);
  });
  trace.Exiting(
      "Exiting CoreAgentInterface::ActivateDocumentFontsByPath(); %ld matched, %ld problems, returning %d",
      FontRecord::Count(matchedFontData), FontRecord::Count(problemFontData), static_cast<int>(status));
  return static_cast<int>(status);
}

// Activates for the system, for the application, or both in this order; the last call's status decides. The
// two lists receive what the first of the calls reported.
unsigned int CoreAgentInterface::ActivateIDs(const std::vector<unsigned int>& ids,
                                             std::vector<unsigned int>& failedIDs,
                                             std::vector<unsigned int>& refusedIDs) {
  const ShuttleLoader* shuttle = ShuttleLoader::GetSharedInstance();
  const ActivationMode mode = ReadActivationMode();
  const unsigned long count = ids.size();
  const std::unique_ptr<unsigned int[]> idArray = CreateArrayFromVector(ids);
  unsigned int status = 0;
  if (mode.global) {
    std::vector<unsigned int> failed(count);
    std::vector<unsigned int> refused(count);
    unsigned int failedCount = 0;
    unsigned int refusedCount = 0;
    status = CallUnderRetryRule([&] {
      failedCount = 0;
      refusedCount = 0;
      return shuttle->ActivateFonts(count, idArray.get(), nullptr, 1, 1, 1, count, count, failed.data(),
                                    refused.data(), &failedCount, &refusedCount);
    });
    failedIDs = TakeFirst(failed, failedCount);
    refusedIDs = TakeFirst(refused, refusedCount);
  }
  if (mode.local) {
    status = CallUnderRetryRule([&] { return shuttle->PreviewActivateFonts(count, idArray.get(), 0); });
  }
  return status;
}

int CoreAgentInterface::ActivateFontByID(CFDictionaryRef font, const std::string& documentIdentifier,
                                         void** /*outDeactivationData*/) {
  OperationTrace trace("CoreAgentInterface::ActivateFontByID",
                       "Entering CoreAgentInterface::ActivateFontByID(fontID=%u, '%s')",
                       FontRecord::GetDatabaseID(font), documentIdentifier.c_str());
  std::vector<unsigned int> failedIDs;
  std::vector<unsigned int> refusedIDs;
  const int result = Flatten(ActivateIDs({FontRecord::GetDatabaseID(font)}, failedIDs, refusedIDs));
  trace.Exiting("CoreAgentInterface::ActivateFontByID() returning %d", result);
  return result;
}

int CoreAgentInterface::ActivateFontsByID(CFArrayRef fonts, const std::string& documentIdentifier,
                                          void** /*outDeactivationData*/, CFMutableArrayRef fontsActivated,
                                          CFMutableArrayRef fontsRefused) {
  OperationTrace trace("CoreAgentInterface::ActivateFontsByID",
                       "Entering CoreAgentInterface::ActivateFontsByID('%s')", documentIdentifier.c_str());
  if (FontRecord::Count(fonts) == 0) {
    OutputIndentedAndFormattedString(
        0, "CoreAgentInterface::ActivateFontsByID -- empty fonts vector, doing nothing.");
    return 0;
  }
  std::vector<unsigned int> failedIDs;
  std::vector<unsigned int> refusedIDs;
  const unsigned int status = ActivateIDs(GetFontIDsFromFontInfoArray(fonts, false), failedIDs, refusedIDs);
  if (status == 0) {
    CreateFontArrayWithErrorsRemoved(fonts, fontsActivated, failedIDs);
  } else if (status == GOspreyAssetManager::kLicenseComplianceViolation && fontsRefused != nullptr) {
    AppendFontsWithIDs(fonts, refusedIDs, fontsRefused);
  }
  const int result = Flatten(status);
  trace.Exiting("CoreAgentInterface::ActivateFontsByID() returning %d", result);
  return result;
}

void CoreAgentInterface::CreateFontArrayWithErrorsRemoved(CFArrayRef fonts, CFMutableArrayRef outFonts,
                                                          const std::vector<unsigned int>& failedIDs) {
  if (fonts == nullptr || outFonts == nullptr) return;
  const std::unordered_set<unsigned int> failed(failedIDs.begin(), failedIDs.end());
  for (CFIndex index = 0; index < CFArrayGetCount(fonts); ++index) {
    CFDictionaryRef font = FontRecord::At(fonts, index);
    const unsigned int id = FontRecord::GetDatabaseID(font);
    if (id != 0 && !failed.contains(id)) CFArrayAppendValue(outFonts, font);
  }
}

int CoreAgentInterface::DeactivateFont(CFDictionaryRef font, void* /*deactivationData*/) {
  OperationTrace trace("CoreAgentInterface::DeactivateFont",
                       "Entering CoreAgentInterface::DeactivateFont(fontID=%u)",
                       FontRecord::GetDatabaseID(font));
  const std::unique_ptr<unsigned int[]> id = CreateArrayFromVector({FontRecord::GetDatabaseID(font)});
  const int result = Flatten(CallUnderRetryRule(
      [&id] { return ShuttleLoader::GetSharedInstance()->DeactivateFonts(1UL, id.get(), 0); }));
  trace.Exiting("CoreAgentInterface::DeactivateFont() returning %d", result);
  return result;
}

int CoreAgentInterface::DeactivateFonts(CFArrayRef fonts, void* /*deactivationData*/,
                                        CFMutableArrayRef fontsDeactivated) {
  OperationTrace trace("CoreAgentInterface::DeactivateFonts",
                       "Entering CoreAgentInterface::DeactivateFonts()");
  if (FontRecord::Count(fonts) == 0) return 0;
  const std::vector<unsigned int> ids = GetFontIDsFromFontInfoArray(fonts, false);
  const std::unique_ptr<unsigned int[]> idArray = CreateArrayFromVector(ids);
  const unsigned int status = CallUnderRetryRule([&] {
    return ShuttleLoader::GetSharedInstance()->DeactivateFonts(static_cast<unsigned long>(ids.size()),
                                                               idArray.get(), 0);
  });
  if (status == 0) CreateFontArrayWithErrorsRemoved(fonts, fontsDeactivated, {});
  const int result = Flatten(status);
  trace.Exiting("CoreAgentInterface::DeactivateFonts() returning %d", result);
  return result;
}

int CoreAgentInterface::RemoveRemoteFonts(CFMutableArrayRef fonts) {
  const OperationTrace trace("CoreAgentInterface::RemoveRemoteFonts",
                             "Entering CoreAgentInterface::RemoveRemoteFonts()");
  if (fonts == nullptr) return -1;
  for (CFIndex index = CFArrayGetCount(fonts) - 1; index >= 0; --index) {
    CFDictionaryRef font = FontRecord::At(fonts, index);
    if (font == nullptr) continue;
    const long type = GetWorkgroupType(font);
    if (!IsRemoteWorkgroupTypeDisabled(type)) continue;
    CFArrayRemoveValueAtIndex(fonts, index);
    OutputIndentedAndFormattedString(0, "Removed font %d because workgroupType is %d",
                                     static_cast<int>(index), static_cast<int>(type));
  }
  return 0;
}
