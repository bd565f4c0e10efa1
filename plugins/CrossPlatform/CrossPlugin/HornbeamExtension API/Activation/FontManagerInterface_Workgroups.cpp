#include "Activation/State/HornbeamGlobals.h"
#include "Activation/Vocabulary/FontRecord.h"
#include "Activation/Vocabulary/FontRecordKeys.h"
#include "Activation/Vocabulary/StatusCodes.h"
#include "Activation/Vocabulary/WorkgroupRecord.h"
#include "FontManagerInterface/FontManagerInterface.h"
#include "LoomInterface/LoomInterface.h"
#include "Memory/CFCast.h"
#include "Utilities/DebugUtils.h"
#include "Utilities/OperationTrace.h"
#include "XCFUtils.h"

namespace {

// A failed question counts as an empty answer: nobody treats the two differently.
RetainPtr<CFArrayRef> GetWorkgroups(FontManagerInterface& manager, bool includeAll, bool includeSystem) {
  CFArrayRef workgroups = nullptr;
  const int status = manager.GetAllWorkgroupsForUser(&workgroups, includeAll, includeSystem, false);
  RetainPtr<CFArrayRef> owned = adoptCF(workgroups);
  return status == 0 ? owned : nullptr;
}

int WorkgroupIDAt(CFArrayRef workgroups, CFIndex index) {
  return GetWorkgroupRecordID(FontRecord::At(workgroups, index));
}

bool ContainsWorkgroup(CFArrayRef workgroups, int workgroupID) {
  const CFIndex count = FontRecord::Count(workgroups);
  for (CFIndex i = 0; i < count; ++i) {
    if (WorkgroupIDAt(workgroups, i) == workgroupID) return true;
  }
  return false;
}

// The index of the first workgroup of that name, or -1.
CFIndex FindWorkgroupByName(CFArrayRef workgroups, CFStringRef name) {
  const CFIndex count = FontRecord::Count(workgroups);
  for (CFIndex i = 0; i < count; ++i) {
    CFStringRef candidate =
        XCFUtils::GetCFStringFromDict(FontRecord::At(workgroups, i), kGM_WorkgroupNameKey);
    if (candidate && CFEqual(candidate, name)) return i;
  }
  return -1;
}

RetainPtr<CFStringRef> CreateNameOfAllWorkgroups(bool standalone) {
  const LoomInterface* loom = HornbeamGlobals::GetSharedLoomInterface();
  if (!loom) return nullptr;
  return adoptCF(loom->LocalizedString(standalone ? CFSTR("All Libraries") : CFSTR("All Workgroups")));
}

}  // namespace

int FontManagerInterface::GetCurrentWorkgroupID() {
  const LoomInterface* loom = HornbeamGlobals::GetSharedLoomInterface();
  return loom ? loom->GetCurrentWorkgroupID() : 0;
}

int FontManagerInterface::SetDefaultWorkgroupID(int workgroupID) {
  const OperationTrace trace("FontManagerInterface::SetDefaultWorkgroupID",
                             "Entering FontManagerInterface::SetDefaultWorkgroupID(%d)", workgroupID);
  LoomInterface* loom = HornbeamGlobals::GetSharedLoomInterface();
  if (loom) loom->SetCurrentWorkgroupID(workgroupID);
  return 0;
}

int16_t FontManagerInterface::SetDefaultWorkgroupName(CFStringRef name) {
  if (!name) return kErrorNotDone;
  int workgroupID = 0;
  const int16_t status = GetWorkgroupID(name, &workgroupID);
  return status == 0 ? static_cast<int16_t>(SetDefaultWorkgroupID(workgroupID)) : status;
}

CFStringRef FontManagerInterface::GetDefaultWorkgroupName() {
  return GetWorkgroupNameFromID(GetCurrentWorkgroupID());
}

int16_t FontManagerInterface::GetWorkgroupID(CFStringRef name, int* outID) {
  OperationTrace trace("FontManagerInterface::GetWorkgroupID",
                       "Entering FontManagerInterface::GetWorkgroupID('%s')",
                       XCFUtils::GetStdString(name).c_str());
  if (!outID || !name) return kErrorNotDone;
  const RetainPtr<CFArrayRef> workgroups = GetWorkgroups(*this, false, false);
  if (!workgroups) return kErrorNotDone;

  if (CanActivateFromAllWorkgroups()) {
    const RetainPtr<CFStringRef> nameOfAll = CreateNameOfAllWorkgroups(RunningStandalone());
    if (nameOfAll && CFEqual(nameOfAll.get(), name)) {
      *outID = kAllWorkgroups;
      return 0;
    }
  }
  const CFIndex index = FindWorkgroupByName(workgroups.get(), name);
  if (index < 0) return kErrorNotDone;
  *outID = WorkgroupIDAt(workgroups.get(), index);
  return 0;
}

CFStringRef FontManagerInterface::GetWorkgroupNameFromID(long workgroupID) {
  const OperationTrace trace("FontManagerInterface::GetWorkgroupNameFromID",
                             "Entering FontManagerInterface::GetWorkgroupNameFromID(%ld)", workgroupID);
  return FindWorkgroupIDGetName(workgroupID, GetWorkgroups(*this, true, true).get());
}

CFStringRef FontManagerInterface::FindWorkgroupIDGetName(long workgroupID, CFArrayRef workgroups) {
  // "All workgroups" is -2 or 0xFFFFFFFE, as its writer has it; the two are one in 32 bits.
  const CFIndex count = FontRecord::Count(workgroups);
  for (CFIndex i = 0; i < count; ++i) {
    const CFDictionaryRef workgroup = FontRecord::At(workgroups, i);
    if (!workgroup || WorkgroupIDAt(workgroups, i) != static_cast<int>(workgroupID)) continue;
    return retainCF(XCFUtils::GetCFStringFromDict(workgroup, kGM_WorkgroupNameKey)).leakRef();
  }
  return nullptr;
}

int FontManagerInterface::AddWorkgroupNamesToFonts(CFArrayRef fonts) {
  const OperationTrace trace("FontManagerInterface::AddWorkgroupNamesToFonts",
                             "Entering FontManagerInterface::AddWorkgroupNamesToFonts(%d fonts)",
                             static_cast<int>(FontRecord::Count(fonts)));
  const RetainPtr<CFArrayRef> workgroups = GetWorkgroups(*this, false, true);
  const CFIndex count = FontRecord::Count(fonts);
  for (CFIndex i = 0; i < count; ++i) {
    const auto font = dynamicCF<CFMutableDictionaryRef>(CFArrayGetValueAtIndex(fonts, i));
    if (!font) continue;
    const int workgroupID = GetWorkgroupRecordID(font);
    const RetainPtr<CFStringRef> name = adoptCF(FindWorkgroupIDGetName(workgroupID, workgroups.get()));
    if (name) CFDictionarySetValue(font, kGM_WorkgroupNameKey, name.get());
  }
  return 0;
}

bool FontManagerInterface::IsAllWorkgroupsSelected() {
  return IsAllWorkgroups(GetCurrentWorkgroupID());
}

bool FontManagerInterface::IsValidWorkgroupForUser(int workgroupID) {
  OperationTrace trace("FontManagerInterface::IsValidWorkgroupForUser",
                       "Entering FontManagerInterface::IsValidWorkgroupForUser(%d)", workgroupID);
  bool valid = false;
  if (IsAllWorkgroups(workgroupID)) {
    valid = CanActivateFromAllWorkgroups();
  } else if (workgroupID != 0) {
    const RetainPtr<CFStringRef> name = adoptCF(GetWorkgroupNameFromID(workgroupID));
    valid = name && FindWorkgroupByName(GetWorkgroups(*this, false, false).get(), name.get()) >= 0;
  }
  trace.Exiting("FontManagerInterface::IsValidWorkgroupForUser() returning %d", valid);
  return valid;
}

bool FontManagerInterface::UserHasAtLeastOneWorkgroup() {
  return FontRecord::Count(GetWorkgroups(*this, false, false).get()) > 0;
}

void FontManagerInterface::SetValidWorkgroupSelected(bool valid) {
  sValidWorkgroupSelected = valid;
}
bool FontManagerInterface::IsValidWorkgroupSelected() {
  return sValidWorkgroupSelected;
}
void FontManagerInterface::SetSelectWorkgroupInProgress(bool inProgress) {
  sSelectWorkgroupInProgress = inProgress;
}
bool FontManagerInterface::IsSelectWorkgroupInProgress() {
  return sSelectWorkgroupInProgress;
}

void FontManagerInterface::InitializeDefaultWorkgroup() {
  OperationTrace trace("FontManagerInterface::InitializeDefaultWorkgroup",
                       "Entering FontManagerInterface::InitializeDefaultWorkgroup()");
  int status = kErrorNotDone;
  if (!IsRunning()) {
    trace.Exiting("Exiting because FontManager is not running.");
    return;
  }

  const int current = GetCurrentWorkgroupID();
  if (IsValidWorkgroupForUser(current)) {
    status = SetDefaultWorkgroupID(current);
    if (status == 0 && HornbeamGlobals::UserHasWorkgroups()) SetValidWorkgroupSelected(true);
  } else if (CanActivateFromAllWorkgroups()) {
    status = SetDefaultWorkgroupID(kAllWorkgroups);
    if (status == 0) SetValidWorkgroupSelected(true);
  } else {
    const RetainPtr<CFArrayRef> workgroups = GetWorkgroups(*this, false, false);
    if (FontRecord::Count(workgroups.get()) == 1) {
      SetDefaultWorkgroupID(WorkgroupIDAt(workgroups.get(), 0));
      SetValidWorkgroupSelected(true);
      status = 0;
    }
  }
  if (status != 0) SetValidWorkgroupSelected(false);
  trace.Exiting("Exiting FontManagerInterface::InitializeDefaultWorkgroup(); status %d", status);
}

bool FontManagerInterface::CheckSelectWorkgroup() {
  OperationTrace trace("FontManagerInterface::CheckSelectWorkgroup",
                       "Entering FontManagerInterface::CheckSelectWorkgroup()");
  HornbeamGlobals::SetUserHasWorkgroups(true);

  bool servicesMayGoOn = false;
  const LoomInterface* loom = HornbeamGlobals::GetSharedLoomInterface();
  FontManagerInterface* manager = GetFontManager();
  if (IsValidWorkgroupSelected()) {
    servicesMayGoOn = true;
  } else if (HornbeamGlobals::ArePluginServicesEnabled() && loom && loom->GetEnabledAutoActivationPref() &&
             manager && (manager->IsLoggedIn() || manager->RunningStandalone())) {
    if (IsSelectWorkgroupInProgress()) {
      OutputIndentedAndFormattedString(
          0, "*** UH-OH, can't display Select Workgroup dialog, because it's already being displayed!");
    } else {
      manager->HandleSelectWorkgroup();
    }
    servicesMayGoOn = HornbeamGlobals::ArePluginServicesEnabled();
  }
  trace.Exiting("FontManagerInterface::CheckSelectWorkgroup() returning %d", servicesMayGoOn);
  return servicesMayGoOn;
}

void FontManagerInterface::HandleSelectWorkgroup() {
  const OperationTrace trace("FontManagerInterface::HandleSelectWorkgroup",
                             "Entering FontManagerInterface::HandleSelectWorkgroup()");
  if (IsSelectWorkgroupInProgress()) {
    OutputIndentedAndFormattedString(0,
                                     "*** FontManagerInterface::HandleSelectWorkgroup -- OOPS, Select "
                                     "Workgroup dialog is already being displayed!");
    return;
  }
  const bool hadValid = IsValidWorkgroupSelected();
  struct InProgress {
    InProgress() { SetSelectWorkgroupInProgress(true); }
    ~InProgress() { SetSelectWorkgroupInProgress(false); }
  } const inProgress;
  if (!IsFontManagerConnected()) return;

  int selected = 0;
  LoomInterface* loom = HornbeamGlobals::GetSharedLoomInterface();
  if (loom && loom->IsValid()) {
    const RetainPtr<CFArrayRef> workgroups = GetWorkgroups(*this, false, false);
    if (FontRecord::Count(workgroups.get()) > 0) {
      const int current = GetCurrentWorkgroupID();
      if (current != 0 && ContainsWorkgroup(workgroups.get(), current)) selected = current;
      if (selected == 0) {
        selected = CanActivateFromAllWorkgroups() ? kAllWorkgroups : WorkgroupIDAt(workgroups.get(), 0);
      }
      HornbeamGlobals::SetUserHasWorkgroups(true);
      SetValidWorkgroupSelected(true);
    } else if (!RunningStandalone()) {
      OutputIndentedAndFormattedString(0, "HandleSelectWorkgroup:  Setting PluginServicesEnabled false");
      HornbeamGlobals::SetUserHasWorkgroups(false);
      if (hadValid) {
        SetValidWorkgroupSelected(false);
        loom->ShowNoWorkgroupsMessageBox();
      }
    }
  }
  SetDefaultWorkgroupID(selected);
}
