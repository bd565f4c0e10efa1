// How the document's fonts get activated, and what becomes of those that can't be.
#include "Activation/FontActivationTracker.h"
#include "Activation/State/HornbeamGlobals.h"
#include "Activation/Vocabulary/FontRecord.h"
#include "Activation/Vocabulary/FontRecordKeys.h"
#include "Activation/Vocabulary/StatusCodes.h"
#include "DocumentElement.h"
#include "FontActivityReporter.h"
#include "FontManagerInterface/FontManagerInterface.h"
#include "HBInDesignUtils.h"
#include "HBIndesignPluginGlobals.h"
#include "Identity/GlyphMarkSupport.h"
#include "LoomInterface/LoomInterface.h"
#include "Memory/CFVector.h"
#include "Utilities/DebugUtils.h"
#include "Utilities/OperationTrace.h"

namespace {

bool IsUsable(const LoomInterface* loom) {
  return loom != nullptr && loom->IsValid();
}

/// Those of the chosen fonts that really are active now: the font manager may have refused some.
RetainPtr<CFMutableArrayRef> ActiveFontsAmong(CFArrayRef fonts) {
  RetainPtr<CFMutableArrayRef> active = MakeArray();
  FontManagerInterface* fontManager = FontManagerInterface::GetFontManager();
  if (fontManager == nullptr || FontRecord::Count(fonts) == 0) {
    return active;
  }
  const std::map<unsigned int, bool> states = fontManager->GetFontIsActivated(fonts);
  for (CFIndex i = 0; i < CFArrayGetCount(fonts); ++i) {
    CFDictionaryRef font = FontRecord::At(fonts, i);
    if (const auto state = states.find(FontRecord::GetDatabaseID(font));
        state != states.end() && state->second) {
      CFArrayAppendValue(active.get(), font);
    }
  }
  return active;
}

}  // namespace

void DocumentElement::ActivateFontList() {
  OperationTrace trace("DocumentElement::ActivateFontList", "Entering DocumentElement::ActivateFontList()");
  HBIndesignPluginGlobals::TotalNoOfDuplicateFonts = 0;
  HBIndesignPluginGlobals::DuplicateFontIndex = 1;

  LoomInterface* loom = HornbeamGlobals::GetSharedLoomInterface();
  if (!IsUsable(loom)) {
    trace.Exiting("Exiting DocumentElement::ActivateFontList - no Loom interface");
    return;
  }
  if (!loom->GetEnabledAutoActivationPref() || !HornbeamGlobals::ArePluginServicesEnabled()) {
    trace.Exiting("Exiting DocumentElement::ActivateFontList - plugin not enabled");
    return;
  }
  FontManagerInterface* fontManager = FontManagerInterface::GetFontManager();
  if (fontManager == nullptr || !fontManager->IsLoggedIn()) {
    trace.Exiting("Exiting DocumentElement::ActivateFontList - user not logged in");
    return;
  }

  const RetainPtr<CFMutableArrayRef> fonts = GetFontsInDocument();
  const RetainPtr<CFMutableArrayRef> matchedFontData = MakeArray();
  const RetainPtr<CFMutableArrayRef> problemFontData = MakeArray();
  if (std::string path; HornbeamGlobals::GetSharedFontActivationTracker() != nullptr &&
                        HBInDesignUtils::GetFullPathFromDocumentUIDRef(mDocUIDRef, path)) {
    ActivateFonts(path, fonts.get(), matchedFontData.get(), problemFontData.get());
  }

  HBIndesignPluginGlobals::RemoveConflictingPendingDeactivatedFonts();
  HBIndesignPluginGlobals::RefreshFontStuff = 1;
  HBIndesignPluginGlobals::CheckHostFontAvailability = 1;
  TakeCanExportFlagFrom(matchedFontData.get());

  OutputIndentedAndFormattedString(
      0, "Calling HBIndesignPluginGlobals::UpdateFontSystem near end of DocumentElement::ActivateFontList");
  HBIndesignPluginGlobals::UpdateFontSystem();
}

void DocumentElement::ActivateFonts(const std::string& path, CFMutableArrayRef fonts,
                                    CFMutableArrayRef matchedFontData, CFMutableArrayRef problemFontData) {
  FontActivationTracker* tracker = HornbeamGlobals::GetSharedFontActivationTracker();
  tracker->ActivateDocumentFonts(GetDocumentIdentifier(), path, matchedFontData, problemFontData, fonts);
  FilterOutInDesignOnlyFonts(problemFontData, false);
  FontActivityReporter::ReportMatched(mDocUIDRef, matchedFontData);

  int problemFontCount = static_cast<int>(CFArrayGetCount(problemFontData));
  if (problemFontCount > 0 && !HornbeamGlobals::GetSharedLoomInterface()->GetPickBestMatch()) {
    problemFontCount -= ResolveProblemFonts(problemFontData);
  }
  FontActivityReporter::ReportProblems(mDocUIDRef, problemFontData);
  if (problemFontCount > 0) {
    AddProblemFontsToUnresolvedFonts(problemFontData);
  }
}

int DocumentElement::ResolveProblemFonts(CFMutableArrayRef problemFontData) {
  HornbeamGlobals::GetSharedLoomInterface()->ShowResolveFonts(problemFontData);
  const RetainPtr<CFMutableArrayRef> resolvedFonts = MakeArray();
  GlyphMarkSupport::AllFontsResolved(problemFontData, resolvedFonts.get());

  int activatedCount = 0;
  HornbeamGlobals::GetSharedFontActivationTracker()->ActivateFontsByID(GetDocumentIdentifier(),
                                                                       resolvedFonts.get(), activatedCount);
  FontActivityReporter::ReportMatched(mDocUIDRef, ActiveFontsAmong(resolvedFonts.get()).get());
  return activatedCount;
}

int DocumentElement::AddProblemFontsToUnresolvedFonts(CFMutableArrayRef problemFonts) {
  constexpr const char* kOperation = "AddProblemFontsToUnresolvedFonts";
  OperationTrace trace(kOperation, "Entering %s()", kOperation);
  if (problemFonts == nullptr) {
    OutputIndentedAndFormattedString(0, "Parameter error in call to %s()", kOperation);
    return kErrorNotDone;
  }
  const LoomInterface* loom = HornbeamGlobals::GetSharedLoomInterface();
  if (!IsUsable(loom)) {
    return kErrorNotDone;
  }
  if (CFArrayGetCount(problemFonts) == 0) {
    OutputIndentedAndFormattedString(0, "No fonts to process");
    return 0;
  }
  if (loom->GetPickBestMatch()) {
    OutputIndentedAndFormattedString(0, "Not processing fonts, because Pick Best Match is turned on.");
    return 0;
  }
  FontActivationTracker* tracker = HornbeamGlobals::GetSharedFontActivationTracker();
  for (CFIndex i = 0; tracker != nullptr && i < CFArrayGetCount(problemFonts); ++i) {
    CFDictionaryRef font = FontRecord::At(problemFonts, i);
    const std::string name = ToStdString(FontRecord::GetPostScriptName(font));
    if (!name.empty() && !CFDictionaryContainsKey(font, kGM_MatchedFontKey)) {
      tracker->AddUnresolvedFont(GetDocumentIdentifier(), name);
      OutputIndentedAndFormattedString(
          0, "This font was skipped:  '%s' -- InDesign's Missing Fonts dialog should be displayed",
          name.c_str());
    }
  }
  return 0;
}

void DocumentElement::TakeCanExportFlagFrom(CFArrayRef fonts) {
  FontManagerInterface* fontManager = FontManagerInterface::GetFontManager();
  if (fontManager == nullptr) {
    return;
  }
  SetCanExportFontsForDocument(fontManager->CanExportFromWorkgroup(fonts));
  OutputIndentedAndFormattedString(0, "Setting 'can export' flag to %s", mCanExportFonts ? "true" : "false");
}
