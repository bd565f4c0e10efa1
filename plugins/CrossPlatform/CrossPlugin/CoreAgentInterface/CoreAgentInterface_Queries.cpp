// What finds fonts and reads their state. A query whose agent has gone reports that and doesn't retry.

#include <algorithm>
#include <array>

#include "Activation/Vocabulary/FontRecord.h"
#include "Activation/Vocabulary/FontRecordKeys.h"
#include "CoreAgentInterface/CoreAgentInterface.h"
#include "CoreAgentInterface/FontIDs.h"
#include "CoreAgentInterface/Shuttle/ShuttleLoader.h"
#include "GErrorCodes.h"
#include "Identity/GlyphMarkSupport.h"
#include "Memory/CFVector.h"
#include "Memory/RetainPtr.h"
#include "Utilities/OperationTrace.h"
#include "XCFUtils.h"

namespace {

constexpr unsigned long kMaxIDsByPostScriptName = 0x400;
constexpr unsigned long kMaxIDsByFamilyName = 0x1000;

// The plug-in's activation status.
constexpr int kUnknown = 0;
constexpr int kInactive = 1;
constexpr int kActive = 2;
constexpr int kTemporarilyActive = 3;

RetainPtr<CFMutableDictionaryRef> CreateQuery(unsigned long fontID, long workgroupID) {
  RetainPtr<CFMutableDictionaryRef> query = MakeDictionary();
  XCFUtils::PutULongIntoDictAsString(query.get(), kGM_DatabaseIDKey, fontID);
  XCFUtils::PutLongIntoDictAsString(query.get(), kGM_WorkgroupIDKey, workgroupID);
  return query;
}

// One lookup of the library. Its count can be beyond the room that it was told.
template <typename Lookup>
unsigned int LookUp(Lookup lookup, const std::string& name, const std::vector<unsigned int>& workgroups,
                    unsigned int* buffer, unsigned long capacity, unsigned long& outCount) {
  unsigned int count = 0;
  const unsigned int status = lookup(name.c_str(), workgroups.data(),
                                     static_cast<unsigned long>(workgroups.size()), buffer, capacity, &count);
  outCount = std::min<unsigned long>(count, capacity);
  return status;
}

}  // namespace

// Two passes, so that system fonts are found even when one workgroup is selected: first the selected
// workgroup, then the System workgroup. The last pass decides the result.
template <unsigned long kCapacity, typename Lookup>
int CoreAgentInterface::FontIDsForName(const std::string& name, long workgroupID, Lookup lookup,
                                       std::vector<unsigned long>& outIDs) {
  std::array<unsigned int, kCapacity> selectedIDs{};
  std::array<unsigned int, kCapacity> systemIDs{};
  unsigned long selectedCount = 0;
  unsigned long systemCount = 0;
  const auto workgroup = static_cast<int>(workgroupID);

  std::vector<unsigned int> workgroups;
  PopulateWorkgroupArray(workgroup, workgroups);
  unsigned int status = LookUp(lookup, name, workgroups, selectedIDs.data(), kCapacity, selectedCount);
  if (!IsAllWorkgroups(workgroup)) {
    const unsigned int systemWorkgroup = GetSystemWorkgroupID();
    if (systemWorkgroup != kUnknownWorkgroup) {
      status = LookUp(lookup, name, {systemWorkgroup}, systemIDs.data(), kCapacity, systemCount);
    }
  }
  outIDs.clear();
  AppendArrayToVector(outIDs, selectedIDs.data(), selectedCount);
  AppendArrayToVector(outIDs, systemIDs.data(), systemCount);
  return status == 0 ? 0 : -1;
}

int CoreAgentInterface::FontIDsForPostScriptName(const std::string& name, long workgroupID,
                                                 std::vector<unsigned long>& outIDs) {
  OperationTrace trace("CoreAgentInterface::FontIDsForPostScriptName", "Entering %s('%s', workgroupID=%ld)",
                       "CoreAgentInterface::FontIDsForPostScriptName", name.c_str(), workgroupID);
  const auto lookup = [](auto... arguments) {
    return ShuttleLoader::GetSharedInstance()->GetFontsByPostscriptName(arguments...);
  };
  const int result = FontIDsForName<kMaxIDsByPostScriptName>(name, workgroupID, lookup, outIDs);
  trace.Exiting("%s() returning %d", "CoreAgentInterface::FontIDsForPostScriptName", result);
  return result;
}

int CoreAgentInterface::FontIDsForFamilyName(const std::string& name, long workgroupID,
                                             std::vector<unsigned long>& outIDs) {
  OperationTrace trace("CoreAgentInterface::FontIDsForFamilyName", "Entering %s('%s', workgroupID=%ld)",
                       "CoreAgentInterface::FontIDsForFamilyName", name.c_str(), workgroupID);
  const auto lookup = [](auto... arguments) {
    return ShuttleLoader::GetSharedInstance()->GetFontsByFamilyName(arguments...);
  };
  const int result = FontIDsForName<kMaxIDsByFamilyName>(name, workgroupID, lookup, outIDs);
  trace.Exiting("%s() returning %d", "CoreAgentInterface::FontIDsForFamilyName", result);
  return result;
}

int CoreAgentInterface::FontIDsForNameOfType(const std::string& name, TypeOfFontName type, long workgroupID,
                                             std::vector<unsigned long>& outIDs) {
  switch (type) {
    case TypeOfFontName::kPostScriptName:
      return FontIDsForPostScriptName(name, workgroupID, outIDs);
    case TypeOfFontName::kFamilyName:
      return FontIDsForFamilyName(name, workgroupID, outIDs);
  }
  return -1;
}

int CoreAgentInterface::CountNamedFonts(std::string name, TypeOfFontName type, long workgroupID,
                                        long* outCount, std::string& /*outToken*/) {
  std::vector<unsigned long> ids;
  const int result = FontIDsForNameOfType(name, type, workgroupID, ids);
  if (outCount != nullptr) *outCount = static_cast<long>(ids.size());
  return result;
}

int CoreAgentInterface::GetNamedFontInfo(std::string name, TypeOfFontName type, long workgroupID, long index,
                                         std::string token, FontOrSetInfoRec* outRec) {
  OperationTrace trace(
      "CoreAgentInterface::GetNamedFontInfo",
      "Entering CoreAgentInterface::GetNamedFontInfo('%s', %d, '%s', workgroupID=%ld, index=%ld)",
      name.c_str(), static_cast<int>(type), token.c_str(), workgroupID, index);
  std::vector<unsigned long> ids;
  int result = FontIDsForNameOfType(name, type, workgroupID, ids);
  if (result == 0) {
    result = -1;
    if (index >= 1 && static_cast<unsigned long>(index) <= ids.size()) {
      const RetainPtr<CFMutableDictionaryRef> query =
          CreateQuery(ids[static_cast<size_t>(index) - 1], workgroupID);
      result = GetFontInfoByID(query.get(), outRec);
    }
  }
  trace.Exiting("Exiting CoreAgentInterface::GetNamedFontInfo(); return code %d", result);
  return result;
}

int CoreAgentInterface::GetFontInfoByID(CFDictionaryRef font, FontOrSetInfoRec* outRec) {
  if (font == nullptr || outRec == nullptr) return -1;
  OperationTrace trace("CoreAgentInterface::GetFontInfoByID",
                       "Entering CoreAgentInterface::GetFontInfoByID(fontID=%u)",
                       FontRecord::GetDatabaseID(font));
  auto scope = static_cast<int>(XCFUtils::GetLongFromDictString(font, kGM_WorkgroupIDKey));
  if (IsAllWorkgroups(GetCurrentWorkgroupID()) || IsAllWorkgroups(scope)) scope = kAllWorkgroups;
  std::vector<unsigned int> workgroups;
  PopulateWorkgroupArray(scope, workgroups);

  *outRec = FontOrSetInfoRec();
  unsigned int id = 0;
  CFMutableDictionaryRef info = nullptr;
  const unsigned int status = ShuttleLoader::GetSharedInstance()->GetFontInfoByID(
      workgroups.data(), static_cast<unsigned long>(workgroups.size()), font, &id, &info);
  RetainPtr<CFMutableDictionaryRef> owned = adoptCF(info);
  if (status == 0 && owned) {
    ConvertActivationStateValues(info);
    outRec->tag = FontOrSetInfoRec::kTagFont;
    outRec->databaseID = id;
    outRec->activationState =
        static_cast<int16_t>(XCFUtils::GetLongFromDictString(info, kGM_ActivationStateKey));
    GlyphMarkSupport::FixGlyphMarkChecksumsIfNeeded(info);
    outRec->fontInfo = owned.leakRef();
  }
  trace.Exiting("Exiting CoreAgentInterface::GetFontInfoByID(); return code %d", static_cast<int>(status));
  return static_cast<int>(status);
}

int CoreAgentInterface::GetPostscriptNameByID(CFStringRef& outName, int workgroupID, unsigned int fontID) {
  const RetainPtr<CFMutableDictionaryRef> query = CreateQuery(fontID, workgroupID);
  std::vector<unsigned int> workgroups;
  PopulateWorkgroupArray(GetCurrentWorkgroupID(), workgroups);
  unsigned int id = 0;
  CFMutableDictionaryRef info = nullptr;
  const unsigned int status = ShuttleLoader::GetSharedInstance()->GetFontInfoByID(
      workgroups.data(), static_cast<unsigned long>(workgroups.size()),
      static_cast<CFDictionaryRef>(query.get()), &id, &info);
  const RetainPtr<CFMutableDictionaryRef> owned = adoptCF(info);
  if (status == 0 && owned) {
    outName = retainCF(XCFUtils::GetCFStringFromDict(owned.get(), kGM_PostScriptNameKey)).leakRef();
  }
  return static_cast<int>(status);
}

// The agent isn't asked: the slug is made of the record in hand.
int CoreAgentInterface::GetGlyphMarkInfo(unsigned int databaseID, CFDictionaryRef fontInfo,
                                         char* outXMLBuffer, unsigned long* inOutBufferSize) {
  OperationTrace trace("CoreAgentInterface::GetGlyphMarkInfo",
                       "Entering CoreAgentInterface::GetGlyphMarkInfo(databaseID=%u)", databaseID);
  int result = -1;
  if (fontInfo != nullptr && outXMLBuffer != nullptr && inOutBufferSize != nullptr) {
    const RetainPtr<CFMutableArrayRef> fonts = MakeArray();
    CFArrayAppendValue(fonts.get(), fontInfo);
    CFStringRef slug = nullptr;
    const int status = GlyphMarkSupport::CreateXMLGlyphMarkSlug(fonts.get(), &slug);
    const RetainPtr<CFStringRef> owned = adoptCF(slug);
    if (status == 0 && slug != nullptr &&
        CFStringGetCString(slug, outXMLBuffer, static_cast<CFIndex>(*inOutBufferSize),
                           kCFStringEncodingUTF8)) {
      result = 0;
    }
  }
  trace.Exiting("CoreAgentInterface::GetGlyphMarkInfo() returning %d", result);
  return result;
}

int CoreAgentInterface::EndGetGlyphMarkInfo(std::string /*token*/) {
  return static_cast<int>(CoreErrorCodes::kNotImplemented);
}

std::map<unsigned int, bool> CoreAgentInterface::GetClientFontActivationStates(
    std::vector<unsigned int> fontIDs) {
  std::map<unsigned int, bool> activated;
  const std::unique_ptr<unsigned int[]> ids = CreateArrayFromVector(fontIDs);
  std::vector<int> states(fontIDs.size());
  // A failed call leaves the states at "not activated".
  ShuttleLoader::GetSharedInstance()->GetClientFontActivationStates(
      static_cast<unsigned long>(fontIDs.size()), ids.get(), states.data());
  for (size_t index = 0; index < fontIDs.size(); ++index) {
    activated.emplace(fontIDs[index], states[index] != 0);
  }
  return activated;
}

std::map<unsigned int, bool> CoreAgentInterface::GetFontIsActivated(CFArrayRef fonts) {
  std::map<unsigned int, bool> activated;
  if (fonts == nullptr) return activated;
  const std::vector<unsigned int> fontIDs = GetFontIDsFromFontInfoArray(fonts, false);
  const std::unique_ptr<unsigned int[]> ids = CreateArrayFromVector(fontIDs);
  std::vector<int> states(fontIDs.size());
  const unsigned int status = ShuttleLoader::GetSharedInstance()->GetFontIsActivated(
      static_cast<unsigned long>(fontIDs.size()), ids.get(), states.data());
  if (status != 0) return activated;
  for (size_t index = 0; index < fontIDs.size(); ++index) activated[fontIDs[index]] = states[index] != 0;
  return activated;
}

std::map<unsigned int, unsigned int> CoreAgentInterface::GetFontConflicts(std::vector<unsigned int> fontIDs) {
  std::map<unsigned int, unsigned int> conflicting;
  const std::unique_ptr<unsigned int[]> ids = CreateArrayFromVector(fontIDs);
  std::vector<unsigned int> conflicts(fontIDs.size());
  const unsigned int status = ShuttleLoader::GetSharedInstance()->GetFontConflicts(
      static_cast<unsigned long>(fontIDs.size()), ids.get(), conflicts.data());
  if (status != 0) return conflicting;
  for (size_t index = 0; index < fontIDs.size(); ++index) {
    if (fontIDs[index] != 0) conflicting[fontIDs[index]] = conflicts[index];
  }
  return conflicting;
}

int CoreAgentInterface::ComputePluginActivationState(long agentState) {
  switch (agentState) {
    case 0:
      return kInactive;
    case 4:
    case 5:
    case 6:
    case 11:
      return kActive;
    case 1:
    case 2:
    case 3:
    case 9:
    case 10:
      return kTemporarilyActive;
    default:
      return kUnknown;
  }
}

int CoreAgentInterface::ConvertActivationStateValues(CFMutableDictionaryRef record) {
  if (record == nullptr) return -1;
  const long agentState = XCFUtils::GetLongFromDictString(record, kGM_ActivationStateKey);
  const int state = ComputePluginActivationState(agentState);
  const bool isTemporary = state == kTemporarilyActive;
  // Told by the agent's own value: of the temporary fonts, not all come from auto-activation.
  const bool isAutoActivated = agentState == 1 || agentState == 2;
  XCFUtils::PutLongIntoDictAsString(record, kGM_ActivationStateKey, state);
  XCFUtils::PutLongIntoDictAsString(record, kGM_IsTempKey, isTemporary ? 1 : 0);
  XCFUtils::PutLongIntoDictAsString(record, kGM_IsActiveKey, state == kActive || isTemporary ? 1 : 0);
  XCFUtils::PutLongIntoDictAsString(record, kGM_IsAutoActivatedKey, isAutoActivated ? 1 : 0);
  return 0;
}
