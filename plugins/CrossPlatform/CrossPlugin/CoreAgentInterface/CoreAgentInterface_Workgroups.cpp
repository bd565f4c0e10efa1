// The user's workgroups, their names, and what the agent permits in them.

#include <array>

#include "Activation/State/HornbeamGlobals.h"
#include "Activation/Vocabulary/FontRecord.h"
#include "Activation/Vocabulary/FontRecordKeys.h"
#include "Activation/Vocabulary/WorkgroupRecord.h"
#include "CoreAgentInterface/CoreAgentInterface.h"
#include "CoreAgentInterface/FontIDs.h"
#include "CoreAgentInterface/Shuttle/ShuttleLoader.h"
#include "LoomInterface/LoomInterface.h"
#include "Memory/CFVector.h"
#include "Memory/RetainPtr.h"
#include "Utilities/OperationTrace.h"
#include "XCFUtils.h"

namespace {

constexpr long kLocalPersonalLibrary = 3;
constexpr long kSystemWorkgroup = 4;
constexpr long kGoogleFontsLibrary = 8;

constexpr size_t kColumnIDSize = 256;

std::string CallStringGetter(unsigned int (ShuttleLoader::*getter)(char*, unsigned long) const) {
  std::array<char, kColumnIDSize> buffer{};
  (ShuttleLoader::GetSharedInstance()->*getter)(buffer.data(), buffer.size());
  buffer.back() = '\0';
  return buffer.data();
}

// The key of the name to show; null keeps the agent's name. The edition is asked for only where it decides.
CFStringRef WorkgroupNameKey(CoreAgentInterface& manager, unsigned int type, const std::string& agentName) {
  switch (type) {
    case 0:
      return CFSTR("AllServerFontsWorkgroup");
    case 2:
      return CFSTR("ServerBasedPersonalWorkgroup");
    case 4:
      return CFSTR("System Fonts (LOCALIZE ME)");
    case 8:
      return CFSTR("GoogleFontsLibrary");
    case 12:
      return CFSTR("Temporary Fonts (LOCALIZE ME)");
    case 3:
    case 10:
    case 11:
      if (!manager.RunningStandalone()) {
        return type == kLocalPersonalLibrary ? CFSTR("LocalPersonalWorkgroup") : nullptr;
      }
      return agentName == "Font Library (LOCALIZE ME)" ? CFSTR("Font Library (LOCALIZE ME)") : nullptr;
    default:
      return nullptr;
  }
}

// A failed question counts as an empty answer.
RetainPtr<CFArrayRef> GetWorkgroups(CoreAgentInterface& manager, bool includeSystem) {
  CFArrayRef workgroups = nullptr;
  const int status = manager.GetAllWorkgroupsForUser(&workgroups, false, includeSystem, false);
  RetainPtr<CFArrayRef> owned = adoptCF(workgroups);
  return status == 0 ? owned : nullptr;
}

RetainPtr<CFDictionaryRef> WithNameAndType(CFDictionaryRef record, CFStringRef name, long type) {
  const RetainPtr<CFMutableDictionaryRef> named = adoptCF(CFDictionaryCreateMutableCopy(nullptr, 0, record));
  const RetainPtr<CFNumberRef> number = adoptCF(CFNumberCreate(nullptr, kCFNumberLongType, &type));
  CFDictionarySetValue(named.get(), kGM_WorkgroupNameKey, name);
  CFDictionarySetValue(named.get(), kGM_WorkgroupTypeKey, number.get());
  return named;
}

}  // namespace

int CoreAgentInterface::GetAllWorkgroupsForUser(CFArrayRef* outWorkgroups, bool includeAllWorkgroup,
                                                bool includeSystemWorkgroup, bool includeTypekitLibrary) {
  OperationTrace trace("CoreAgentInterface::GetAllWorkgroupsForUser",
                       "Entering CoreAgentInterface::GetAllWorkgroupsForUser(%d, %d, %d)",
                       includeAllWorkgroup, includeSystemWorkgroup, includeTypekitLibrary);
  if (outWorkgroups == nullptr) return -1;
  *outWorkgroups = nullptr;
  const unsigned int status = ShuttleLoader::GetSharedInstance()->GetAllWorkgroupsForUser(
      outWorkgroups, includeSystemWorkgroup, includeTypekitLibrary);
  if (status == 0 && *outWorkgroups != nullptr) {
    const RetainPtr<CFArrayRef> agentRecords = adoptCF(*outWorkgroups);
    RetainPtr<CFMutableArrayRef> workgroups = MakeArray();
    for (CFIndex index = 0; index < CFArrayGetCount(agentRecords.get()); ++index) {
      CFDictionaryRef record = FontRecord::At(agentRecords.get(), index);
      if (record == nullptr) continue;
      const long type = GetWorkgroupType(record);
      const RetainPtr<CFStringRef> name = adoptCF(CreateLocalizedWorkgroupName(
          static_cast<unsigned int>(type), XCFUtils::GetStringFromDict(record, kGM_WorkgroupNameKey)));
      CFArrayAppendValue(workgroups.get(), name ? WithNameAndType(record, name.get(), type).get() : record);
    }
    if (includeAllWorkgroup) AppendAllWorkgroupsRecord(workgroups.get());
    *outWorkgroups = workgroups.leakRef();
  }
  trace.Exiting("CoreAgentInterface::GetAllWorkgroupsForUser() returning %d", static_cast<int>(status));
  return static_cast<int>(status);
}

// An empty list stays empty: there is nothing that "all" could stand for.
void CoreAgentInterface::AppendAllWorkgroupsRecord(CFMutableArrayRef workgroups) {
  if (CFArrayGetCount(workgroups) == 0 || !CanActivateFromAllWorkgroups()) return;
  const LoomInterface* loom = HornbeamGlobals::GetSharedLoomInterface();
  const CFStringRef key = RunningStandalone() ? CFSTR("All Libraries") : CFSTR("All Workgroups");
  const RetainPtr<CFStringRef> name = loom == nullptr ? retainCF(key) : adoptCF(loom->LocalizedString(key));
  const RetainPtr<CFMutableDictionaryRef> all = MakeDictionary();
  CFDictionarySetValue(all.get(), kGM_WorkgroupNameKey, name.get());
  XCFUtils::PutLongIntoDictAsString(all.get(), kGM_WorkgroupIDKey, kAllWorkgroups);
  CFArrayAppendValue(workgroups, all.get());
}

CFStringRef CoreAgentInterface::CreateLocalizedWorkgroupName(unsigned int type,
                                                             const std::string& agentName) {
  const LoomInterface* loom = HornbeamGlobals::GetSharedLoomInterface();
  if (loom == nullptr) return nullptr;
  return loom->LocalizedString(WorkgroupNameKey(*this, type, agentName));
}

bool CoreAgentInterface::CheckForWorkgroups() {
  return UserHasAtLeastOneWorkgroup();
}

unsigned int CoreAgentInterface::GetSpecialWorkgroupID(long type) {
  const RetainPtr<CFArrayRef> workgroups = GetWorkgroups(*this, true);
  for (CFIndex index = 0; index < FontRecord::Count(workgroups.get()); ++index) {
    CFDictionaryRef record = FontRecord::At(workgroups.get(), index);
    if (record != nullptr && GetWorkgroupType(record) == type) {
      return static_cast<unsigned int>(GetWorkgroupRecordID(record));
    }
  }
  return kUnknownWorkgroup;
}

unsigned int CoreAgentInterface::GetSystemWorkgroupID() {
  if (systemWorkgroupID == kUnknownWorkgroup) systemWorkgroupID = GetSpecialWorkgroupID(kSystemWorkgroup);
  return systemWorkgroupID;
}

unsigned int CoreAgentInterface::GetGoogleWebFontsLibraryID() {
  if (googleWebFontsLibID == kUnknownWorkgroup) {
    googleWebFontsLibID = GetSpecialWorkgroupID(kGoogleFontsLibrary);
  }
  return googleWebFontsLibID;
}

void CoreAgentInterface::PopulateWorkgroupArray(int workgroupID, std::vector<unsigned int>& outIDs) {
  if (IsAllWorkgroups(workgroupID)) {
    outIDs.push_back(kCoreAgentAllWorkgroups);
    return;
  }
  outIDs.push_back(static_cast<unsigned int>(workgroupID));
  if (IsGoogleWebFontsEnabled()) outIDs.push_back(GetGoogleWebFontsLibraryID());
}

bool CoreAgentInterface::IsRemoteWorkgroupTypeDisabled(long type) {
  return type == kGoogleFontsLibrary && !IsGoogleWebFontsEnabled();
}

bool CoreAgentInterface::IsSelectedWorkgroupLocal() {
  const int current = GetCurrentWorkgroupID();
  const RetainPtr<CFArrayRef> workgroups = GetWorkgroups(*this, false);
  for (CFIndex index = 0; index < FontRecord::Count(workgroups.get()); ++index) {
    CFDictionaryRef record = FontRecord::At(workgroups.get(), index);
    if (record != nullptr && GetWorkgroupRecordID(record) == current) {
      return GetWorkgroupType(record) == kLocalPersonalLibrary;
    }
  }
  return false;
}

bool CoreAgentInterface::GetPermission(bool acrossWorkgroups, const std::string& columnID, int workgroupID) {
  const int scope = IsAllWorkgroups(workgroupID) ? static_cast<int>(kCoreAgentAllWorkgroups) : workgroupID;
  int allowed = 0;
  ShuttleLoader::GetSharedInstance()->GetPermission(acrossWorkgroups, columnID.c_str(), scope, &allowed);
  return allowed != 0;
}

bool CoreAgentInterface::CanActivateFromAllWorkgroups() {
  return GetPermission(true, CallStringGetter(&ShuttleLoader::GetCanActivateAcrossWorkgroupsColumnID), 0);
}

bool CoreAgentInterface::CanExportFromWorkgroup(CFArrayRef fonts) {
  if (!IsAllWorkgroupsSelected()) {
    return GetPermission(false, CallStringGetter(&ShuttleLoader::GetExportFontsColumnID),
                         GetCurrentWorkgroupID());
  }
  if (fonts == nullptr) return true;
  const std::vector<unsigned int> fontIDs = GetFontIDsFromFontInfoArray(fonts, false);
  const std::unique_ptr<unsigned int[]> ids = CreateArrayFromVector(fontIDs);
  int allowed = 0;
  const unsigned int status = ShuttleLoader::GetSharedInstance()->CanExportFonts(
      static_cast<unsigned long>(fontIDs.size()), ids.get(), &allowed);
  return status == 0 && allowed != 0;
}
