#pragma once

#include <CoreFoundation/CoreFoundation.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <deque>
#include <functional>
#include <map>
#include <set>
#include <string>
#include <type_traits>
#include <vector>

#include "CoreAgentInterface/Shuttle/ShuttleLoader.h"
#include "support/FontRecords.h"

/// The agent's client library in memory: a filled table that records every call and behaves as the public
/// members say. It is the shared library as long as it exists.
///
/// A call is recorded as its text, arguments in order without the facade: numbers as they are, texts in
/// apostrophes, lists of IDs in brackets, every other pointer as "*", null as "0":
/// "DeactivateFonts(2, [7 9], 0)".
class FakeClientLibrary {
 public:
  using ErrCode = PluginInterface::ErrCode;
  using FacadeRef = PluginInterface::FacadeRef;

  struct Font {
    unsigned int fontID;
    RetainPtr<CFMutableDictionaryRef> record;
    long agentState;  ///< The agent's own 0 to 11.
    int workgroupID;
  };

  explicit FakeClientLibrary(const std::string& version = "15.1.0") : loader_(MakeTable(), "/fake", version) {
    sCurrent = this;
    before_ = ShuttleLoader::ReplaceSharedInstanceForTesting(&loader_);
  }
  ~FakeClientLibrary() {
    ShuttleLoader::ReplaceSharedInstanceForTesting(before_);
    sCurrent = nullptr;
  }
  FakeClientLibrary(const FakeClientLibrary&) = delete;
  FakeClientLibrary& operator=(const FakeClientLibrary&) = delete;

  /// The table, for tests that take an entry away.
  ShuttleLoader& Loader() { return loader_; }

  unsigned int AddFont(const std::string& name, long agentState = 0, int workgroupID = 1,
                       const std::string& family = "Family") {
    const auto fontID = static_cast<unsigned int>(fonts.size() + 1);
    fonts.push_back({fontID,
                     MakeFontRecord({{kGM_PostScriptNameKey, name},
                                     {kGM_FamilyKey, family},
                                     {kGM_DatabaseIDKey, std::to_string(fontID)},
                                     {kGM_WorkgroupIDKey, std::to_string(workgroupID)}}),
                     agentState, workgroupID});
    return fontID;
  }

  void AddWorkgroup(int workgroupID, const std::string& name, int type) {
    workgroups.push_back(MakeFontRecord({{kGM_WorkgroupIDKey, std::to_string(workgroupID)},
                                         {kGM_WorkgroupNameKey, name},
                                         {kGM_WorkgroupTypeKey, std::to_string(type)}}));
  }

  /// How often an entry was called.
  long CountCalls(const std::string& entry) const {
    return std::count_if(calls.begin(), calls.end(),
                         [&entry](const std::string& call) { return call.starts_with(entry + "("); });
  }

  /// The last call of an entry; empty for none.
  std::string LastCall(const std::string& entry) const {
    const auto found = std::find_if(calls.rbegin(), calls.rend(), [&entry](const std::string& call) {
      return call.starts_with(entry + "(");
    });
    return found == calls.rend() ? "" : *found;
  }

  // What it is.
  int running = 1;
  int standalone = 1;
  int loggedIn = 1;
  int schemaInSync = 1;
  int googleFontsEnabled = 0;
  int mayExport = 1;
  std::string vaultPath = "/vault";
  std::set<std::string> permissions;  ///< Column IDs: "CanActivateAcrossWorkgroups", "ExportFonts".
  std::vector<Font> fonts;
  std::vector<RetainPtr<CFMutableDictionaryRef>> workgroups;
  std::vector<unsigned int> failedIDs;   ///< What ActivateFonts reports in its list A.
  std::vector<unsigned int> refusedIDs;  ///< And in its list B.
  std::map<unsigned int, unsigned int> conflicts;

  // What it answers instead of success: the next calls' codes by entry, and one for all further calls.
  std::map<std::string, std::deque<ErrCode>> nextResults;
  std::map<std::string, ErrCode> results;
  std::function<void(const std::string& call)> duringCall;

  // What it was asked.
  std::vector<std::string> calls;
  std::vector<FacadeRef> facades;  ///< Of each call in `calls` that takes one.
  PluginInterface::NotifyProc callback = nullptr;
  intptr_t facadeGeneration = 1;

 private:
  enum class Entry {
#define AGENT_ENTRY(name, ...) name,
#define FLAG_ENTRY(name) name,
#define COLUMN_ENTRY(name) name,
#define PLAIN_ENTRY(result, name, ...) name,
#include "CoreAgentInterface/Shuttle/ShuttleEntries.h"
  };

  template <Entry kEntry>
  struct Is {};

  static const char* NameOf(Entry entry) {
    static const char* const kNames[] = {
#define AGENT_ENTRY(name, ...) #name,
#define FLAG_ENTRY(name) #name,
#define COLUMN_ENTRY(name) #name,
#define PLAIN_ENTRY(result, name, ...) #name,
#include "CoreAgentInterface/Shuttle/ShuttleEntries.h"
    };
    return kNames[static_cast<size_t>(entry)];
  }

  static ShuttleFunctions MakeTable() {
    ShuttleFunctions table;
#define AGENT_ENTRY(name, ...) table.pf##name = &AgentCall<Entry::name>;
#define FLAG_ENTRY(name) table.pf##name = &FlagCall<Entry::name>;
#define COLUMN_ENTRY(name) table.pf##name = &ColumnCall<Entry::name>;
#define PLAIN_ENTRY(result, name, ...) table.pf##name = &PlainCall<Entry::name>;
#include "CoreAgentInterface/Shuttle/ShuttleEntries.h"
    table.pfGetPluginFacadeInstance = [] { return reinterpret_cast<FacadeRef>(sCurrent->facadeGeneration); };
    return table;
  }

  template <Entry kEntry, typename... Parameters>
  static ErrCode AgentCall(FacadeRef facade, Parameters... parameters) {
    sCurrent->facades.push_back(facade);
    return sCurrent->Answer(Is<kEntry>(), NameOf(kEntry), parameters...);
  }

  template <Entry kEntry>
  static int FlagCall(FacadeRef facade) {
    sCurrent->facades.push_back(facade);
    return static_cast<int>(sCurrent->Answer(Is<kEntry>(), NameOf(kEntry)));
  }

  template <Entry kEntry, typename Result, typename... Parameters>
  static Result PlainCall(Parameters... parameters) {
    if constexpr (std::is_same_v<Result, ErrCode>) {
      return sCurrent->Answer(Is<kEntry>(), NameOf(kEntry), parameters...);
    } else {
      return Result();
    }
  }

  // A column's ID is the entry's name without "Get" and "ColumnID".
  template <Entry kEntry>
  static ErrCode ColumnCall(char* buffer, unsigned long size) {
    std::string column = NameOf(kEntry);
    column = column.substr(3, column.find("ColumnID") - 3);
    std::snprintf(buffer, size, "%s", column.c_str());
    return 0;
  }

  template <Entry kEntry, typename... Parameters>
  ErrCode Answer(Is<kEntry> entry, const std::string& name, Parameters... parameters) {
    calls.push_back(name + "(" + Text({MakeArgument(parameters)...}) + ")");
    if (duringCall) duringCall(calls.back());
    std::deque<ErrCode>& next = nextResults[name];
    if (!next.empty()) {
      const ErrCode result = next.front();
      next.pop_front();
      if (result != 0) return result;
    } else if (const auto always = results.find(name); always != results.end() && always->second != 0) {
      return always->second;
    }
    return Do(entry, parameters...);
  }

  // Success without any effect, for the entries that have no behaviour below.
  template <Entry kEntry, typename... Parameters>
  ErrCode Do(Is<kEntry>, Parameters...) {
    return 0;
  }

  ErrCode Do(Is<Entry::GetIsCoreAgentProcessRunning>, int* out) {
    return Tell(running, out);
  }
  ErrCode Do(Is<Entry::GetRunningStandalone>, int* out) {
    return Tell(standalone, out);
  }
  ErrCode Do(Is<Entry::GetIsLoggedIn>, int* out) {
    return Tell(loggedIn, out);
  }
  ErrCode Do(Is<Entry::GetAreSchemaVersionsInSync>, int* out) {
    return Tell(schemaInSync, out);
  }
  ErrCode Do(Is<Entry::GetIsGoogleWebFontsEnabled>, int* out) {
    return Tell(googleFontsEnabled, out);
  }
  ErrCode Do(Is<Entry::CanExportFonts>, unsigned long, const unsigned int*, int* out) {
    return Tell(mayExport, out);
  }
  ErrCode Do(Is<Entry::GetPermission>, bool, const char* columnID, int, int* out) {
    return Tell(permissions.contains(columnID) ? 1 : 0, out);
  }
  ErrCode Do(Is<Entry::GetFontVaultPath>, unsigned long size, char* buffer) {
    std::snprintf(buffer, size, "%s", vaultPath.c_str());
    return 0;
  }
  ErrCode Do(Is<Entry::ResetPluginFacadeInstance>) {
    ++facadeGeneration;
    return 0;
  }
  ErrCode Do(Is<Entry::RegisterForNotifications>, PluginInterface::NotifyProc proc) {
    callback = proc;
    return 0;
  }
  ErrCode Do(Is<Entry::UnregisterForNotifications>, PluginInterface::NotifyProc) {
    callback = nullptr;
    return 0;
  }
  ErrCode Do(Is<Entry::GetAllWorkgroupsForUser>, CFArrayRef* out, bool includeSystem, bool) {
    const auto array = MakeArray();
    for (const auto& workgroup : workgroups) {
      if (includeSystem || FontValue(workgroup.get(), kGM_WorkgroupTypeKey) != "4") {
        CFArrayAppendValue(array.get(), workgroup.get());
      }
    }
    *out = CFArrayCreateCopy(nullptr, array.get());
    return 0;
  }

  ErrCode Do(Is<Entry::GetFontsByPostscriptName>, const char* name, const unsigned int* scope,
             unsigned long scopeCount, unsigned int* out, unsigned long capacity, unsigned int* outCount) {
    return Find(kGM_PostScriptNameKey, name, {scope, scope + scopeCount}, out, capacity, outCount);
  }
  ErrCode Do(Is<Entry::GetFontsByFamilyName>, const char* name, const unsigned int* scope,
             unsigned long scopeCount, unsigned int* out, unsigned long capacity, unsigned int* outCount) {
    return Find(kGM_FamilyKey, name, {scope, scope + scopeCount}, out, capacity, outCount);
  }
  ErrCode Do(Is<Entry::GetFontInfoByID>, const unsigned int*, unsigned long, CFDictionaryRef query,
             unsigned int* outID, CFMutableDictionaryRef* outInfo) {
    if (const Font* font = FindFont(FontRecord::GetDatabaseID(query))) {
      *outID = font->fontID;
      *outInfo = RecordWithState(*font).leakRef();
    }
    return 0;
  }
  ErrCode Do(Is<Entry::GetFontIsActivated>, unsigned long count, const unsigned int* ids, int* out) {
    for (unsigned long i = 0; i < count; ++i) out[i] = StateOf(ids[i]) != 0 ? 1 : 0;
    return 0;
  }
  ErrCode Do(Is<Entry::GetClientFontActivationStates>, unsigned long count, const unsigned int* ids,
             int* out) {
    for (unsigned long i = 0; i < count; ++i) out[i] = StateOf(ids[i]) == 1 ? 1 : 0;
    return 0;
  }
  ErrCode Do(Is<Entry::GetFontConflicts>, unsigned long count, const unsigned int* ids, unsigned int* out) {
    for (unsigned long i = 0; i < count; ++i) {
      const auto found = conflicts.find(ids[i]);
      out[i] = found == conflicts.end() ? 0 : found->second;
    }
    return 0;
  }

  ErrCode Do(Is<Entry::ActivateDocumentFontsByPath>, const char*, CFArrayRef wanted, bool, bool, bool, bool,
             int, CFMutableArrayRef matched, CFMutableArrayRef problems) {
    for (CFIndex i = 0; i < FontRecord::Count(wanted); ++i) {
      CFDictionaryRef font = FontRecord::At(wanted, i);
      CFStringRef name = FontRecord::GetPostScriptName(font);
      if (name == nullptr) continue;
      const auto found = std::find_if(fonts.begin(), fonts.end(), [name](const Font& candidate) {
        return FontValue(candidate.record.get(), kGM_PostScriptNameKey) == ToStdString(name);
      });
      if (found == fonts.end()) {
        CFArrayAppendValue(problems, adoptCF(CFDictionaryCreateMutableCopy(nullptr, 0, font)).get());
        continue;
      }
      const auto record = RecordWithState(*found);
      XCFUtils::PutBoolIntoDictAsString(record.get(), kGM_IsActiveKey, found->agentState != 0);
      CFArrayAppendValue(matched, record.get());
      if (found->agentState == 0) found->agentState = 1;
    }
    return 0;
  }
  ErrCode Do(Is<Entry::ActivateFonts>, unsigned long count, const unsigned int* ids, const void*, int, int,
             int, unsigned long capacityA, unsigned long capacityB, unsigned int* idsA, unsigned int* idsB,
             unsigned int* countA, unsigned int* countB) {
    std::copy_n(failedIDs.begin(), std::min<size_t>(capacityA, failedIDs.size()), idsA);
    std::copy_n(refusedIDs.begin(), std::min<size_t>(capacityB, refusedIDs.size()), idsB);
    *countA = static_cast<unsigned int>(failedIDs.size());
    *countB = static_cast<unsigned int>(refusedIDs.size());
    SetStates(count, ids, 1);
    return refusedIDs.empty() ? 0 : 0x0500400C;
  }
  ErrCode Do(Is<Entry::PreviewActivateFonts>, unsigned long count, const unsigned int* ids, int) {
    SetStates(count, ids, 3);
    return 0;
  }
  ErrCode Do(Is<Entry::DeactivateFonts>, unsigned long count, const unsigned int* ids, int) {
    SetStates(count, ids, 0);
    return 0;
  }

  static ErrCode Tell(int value, int* out) {
    *out = value;
    return 0;
  }

  Font* FindFont(unsigned int fontID) {
    return fontID >= 1 && fontID <= fonts.size() ? &fonts[fontID - 1] : nullptr;
  }

  long StateOf(unsigned int fontID) {
    const Font* font = FindFont(fontID);
    return font == nullptr ? 0 : font->agentState;
  }

  void SetStates(unsigned long count, const unsigned int* ids, long state) {
    for (unsigned long i = 0; i < count; ++i) {
      if (Font* font = FindFont(ids[i])) font->agentState = state;
    }
  }

  static RetainPtr<CFMutableDictionaryRef> RecordWithState(const Font& font) {
    auto record = adoptCF(CFDictionaryCreateMutableCopy(nullptr, 0, font.record.get()));
    XCFUtils::PutLongIntoDictAsString(record.get(), kGM_ActivationStateKey, font.agentState);
    return record;
  }

  ErrCode Find(CFStringRef key, const std::string& name, const std::set<unsigned int>& scope,
               unsigned int* out, unsigned long capacity, unsigned int* outCount) {
    *outCount = 0;
    for (const Font& font : fonts) {
      if (FontValue(font.record.get(), key) != name) continue;
      if (!scope.contains(0) && !scope.contains(static_cast<unsigned int>(font.workgroupID))) continue;
      if (*outCount < capacity) out[*outCount] = font.fontID;
      ++*outCount;
    }
    return 0;
  }

  struct Argument {
    std::string text;
    const unsigned int* ids = nullptr;
    bool isCount = false;
    unsigned long count = 0;
  };

  template <typename Value>
  static Argument MakeArgument(Value value) {
    if constexpr (std::is_same_v<Value, const char*>) {
      return {value == nullptr ? "0" : "'" + std::string(value) + "'"};
    } else if constexpr (std::is_same_v<Value, const unsigned int*>) {
      return {value == nullptr ? "0" : "*", value};
    } else if constexpr (std::is_pointer_v<Value>) {
      return {value == nullptr ? "0" : "*"};
    } else {
      return {std::to_string(value), nullptr, std::is_same_v<Value, unsigned long>,
              static_cast<unsigned long>(value)};
    }
  }

  // A list of IDs has its count beside it, in front or behind.
  static std::string Text(const std::vector<Argument>& arguments) {
    std::string text;
    for (size_t i = 0; i < arguments.size(); ++i) {
      std::string argument = arguments[i].text;
      if (arguments[i].ids != nullptr) {
        const Argument& count = i > 0 && arguments[i - 1].isCount ? arguments[i - 1] : arguments.at(i + 1);
        argument = "[";
        for (unsigned long id = 0; id < count.count; ++id) {
          argument += (id == 0 ? "" : " ") + std::to_string(arguments[i].ids[id]);
        }
        argument += "]";
      }
      text += (i == 0 ? "" : ", ") + argument;
    }
    return text;
  }

  ShuttleLoader loader_;
  ShuttleLoader* before_ = nullptr;
  static inline FakeClientLibrary* sCurrent = nullptr;
};
