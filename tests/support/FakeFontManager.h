#pragma once

#include <CoreFoundation/CoreFoundation.h>

#include <algorithm>
#include <cstring>
#include <functional>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "Activation/Vocabulary/StatusCodes.h"
#include "FontManagerInterface/FontManagerInterface.h"
#include "support/FontRecords.h"

/// A font manager in memory. It is the live one as long as it exists, and behaves as its public members say.
///
/// Its library holds fonts with database IDs from 1 on, found by exact PostScript name or family.
class FakeFontManager : public FontManagerInterface {
 public:
  struct Font {
    unsigned int fontID;
    RetainPtr<CFMutableDictionaryRef> record;  ///< What GetGlyphMarkInfo() writes, and names and family.
    int16_t state;                             ///< Plug-in activation status.
  };

  FakeFontManager() : previous_(sm_pFontManager.exchange(this)) {}
  ~FakeFontManager() override { sm_pFontManager = previous_; }

  unsigned int AddFont(FontFields fields, int16_t state = 1) {
    return AddFont(MakeFontRecord(fields), state);
  }
  unsigned int AddFont(RetainPtr<CFMutableDictionaryRef> record, int16_t state = 1) {
    fonts.push_back({static_cast<unsigned int>(fonts.size() + 1), std::move(record), state});
    return fonts.back().fontID;
  }

  void AddWorkgroup(int workgroupID, const std::string& name, int type = 3) {
    workgroups.push_back(MakeFontRecord({{kGM_WorkgroupIDKey, std::to_string(workgroupID)},
                                         {kGM_WorkgroupNameKey, name},
                                         {kGM_WorkgroupTypeKey, std::to_string(type)}}));
  }

  /// Statics of the facade that outlive a manager, back to their start.
  static void ResetSelection() {
    sValidWorkgroupSelected = true;
    sSelectWorkgroupInProgress = false;
  }

  // What it is.
  bool connected = true;
  bool agent = true;
  bool running = true;
  bool standalone = true;
  bool loggedIn = true;
  bool mayUseAllWorkgroups = false;
  int disabledWorkgroupType = -1;
  std::vector<Font> fonts;
  std::vector<RetainPtr<CFMutableDictionaryRef>> workgroups;
  std::map<unsigned int, bool> clientStates;  ///< IDs that are left out are left out of the answer.

  // What it answers instead of success.
  int activateStatus = 0;
  int deactivateStatus = 0;
  int workgroupStatus = 0;
  std::map<unsigned int, int> deactivateOneStatus;
  std::map<std::string, int> countStatus;             ///< By name looked up.
  std::map<unsigned int, int> namedFontStatus;        ///< By database ID.
  std::map<unsigned int, int> glyphMarkStatus;        ///< By database ID.
  std::map<unsigned int, std::string> glyphMarkText;  ///< By database ID; else the record's slug.
  std::function<void()> duringAgentCall;              ///< Runs inside each activation and deactivation call.

  // What it was asked.
  std::vector<std::vector<unsigned int>> deactivateCalls;
  std::vector<unsigned int> deactivateOneCalls;
  std::vector<std::string> lookups;  ///< "ps:Name" or "family:Name", in order.
  int endedWalks = 0;

  bool ConnectedToCoreAgent() override { return agent; }
  bool RunningStandalone() override { return standalone; }
  bool IsFontManagerConnected() override { return connected; }
  bool IsRunning() override { return running; }
  bool IsLoggedIn() override { return loggedIn; }
  bool CanActivateFromAllWorkgroups() override { return mayUseAllWorkgroups; }
  bool CheckForWorkgroups() override { return UserHasAtLeastOneWorkgroup(); }
  bool IsRemoteWorkgroupTypeDisabled(long type) override { return type == disabledWorkgroupType; }

  std::map<unsigned int, bool> GetClientFontActivationStates(std::vector<unsigned int> fontIDs) override {
    std::map<unsigned int, bool> states;
    for (unsigned int fontID : fontIDs) {
      if (const auto found = clientStates.find(fontID); found != clientStates.end()) states.insert(*found);
    }
    return states;
  }

  std::map<unsigned int, bool> GetFontIsActivated(CFArrayRef list) override {
    std::map<unsigned int, bool> states;
    for (unsigned int fontID : FontIDsOf(list)) {
      if (const Font* font = Find(fontID)) states[fontID] = font->state >= 2;
    }
    return states;
  }

  int ActivateDocumentFontsByPath(const char* /*documentPath*/, CFArrayRef asked, CFMutableArrayRef matched,
                                  CFMutableArrayRef problems) override {
    if (duringAgentCall) duringAgentCall();
    for (CFIndex i = 0; i < FontRecord::Count(asked); ++i) {
      CFDictionaryRef wanted = FontRecord::At(asked, i);
      Font* font = FindByName(ToStdString(FontRecord::GetPostScriptName(wanted)));
      if (font) {
        CFArrayAppendValue(matched, MakeMatchedRecord(*font).get());
        font->state = std::max<int16_t>(font->state, 3);
      } else if (wanted) {
        CFArrayAppendValue(problems, wanted);
      }
    }
    return activateStatus;
  }

  int ActivateFontByID(CFDictionaryRef /*font*/, const std::string& /*documentIdentifier*/,
                       void** /*outDeactivationData*/) override {
    return activateStatus;
  }

  int ActivateFontsByID(CFArrayRef asked, const std::string& /*documentIdentifier*/,
                        void** /*outDeactivationData*/, CFMutableArrayRef activated,
                        CFMutableArrayRef /*refused*/) override {
    if (duringAgentCall) duringAgentCall();
    if (activateStatus == 0 && activated) {
      CFArrayAppendArray(activated, asked, CFRangeMake(0, FontRecord::Count(asked)));
    }
    return activateStatus;
  }

  int DeactivateFont(CFDictionaryRef font, void* /*deactivationData*/) override {
    if (duringAgentCall) duringAgentCall();
    const unsigned int fontID = FontRecord::GetDatabaseID(font);
    deactivateOneCalls.push_back(fontID);
    const auto status = deactivateOneStatus.find(fontID);
    return status == deactivateOneStatus.end() ? 0 : status->second;
  }

  int DeactivateFonts(CFArrayRef list, void* /*deactivationData*/, CFMutableArrayRef deactivated) override {
    if (duringAgentCall) duringAgentCall();
    deactivateCalls.push_back(FontIDsOf(list));
    if (deactivateStatus == 0 && deactivated) {
      CFArrayAppendArray(deactivated, list, CFRangeMake(0, FontRecord::Count(list)));
    }
    return deactivateStatus;
  }

  int CountNamedFonts(std::string name, TypeOfFontName type, long /*workgroupID*/, long* outCount,
                      std::string& /*outToken*/) override {
    lookups.push_back((type == TypeOfFontName::kPostScriptName ? "ps:" : "family:") + name);
    if (const auto status = countStatus.find(name); status != countStatus.end()) return status->second;
    *outCount = static_cast<long>(FindAll(name, type).size());
    return 0;
  }

  int GetNamedFontInfo(std::string name, TypeOfFontName type, long /*workgroupID*/, long index,
                       std::string /*token*/, FontOrSetInfoRec* outRec) override {
    *outRec = {};
    const std::vector<const Font*> found = FindAll(name, type);
    if (index < 1 || index > static_cast<long>(found.size())) return kErrorNotDone;
    const Font& font = *found[static_cast<size_t>(index - 1)];
    const auto status = namedFontStatus.find(font.fontID);
    if (status != namedFontStatus.end()) return status->second;
    outRec->tag = FontOrSetInfoRec::kTagFont;
    outRec->databaseID = font.fontID;
    outRec->activationState = font.state;
    outRec->fontInfo = CFDictionaryCreateMutableCopy(nullptr, 0, font.record.get());
    return 0;
  }

  int GetGlyphMarkInfo(unsigned int databaseID, CFDictionaryRef fontInfo, char* outXMLBuffer,
                       unsigned long* inOutBufferSize) override {
    if (const auto status = glyphMarkStatus.find(databaseID); status != glyphMarkStatus.end()) {
      return status->second;
    }
    std::string text = SlugOf(fontInfo);
    if (const auto told = glyphMarkText.find(databaseID); told != glyphMarkText.end()) text = told->second;
    // One that is too long fills the buffer and leaves no ending zero.
    std::memcpy(outXMLBuffer, text.c_str(), std::min<size_t>(text.size() + 1, *inOutBufferSize));
    return 0;
  }

  int EndGetGlyphMarkInfo(std::string /*token*/) override {
    ++endedWalks;
    return 0;
  }

  int GetAllWorkgroupsForUser(CFArrayRef* outWorkgroups, bool /*includeAllWorkgroup*/,
                              bool /*includeSystemWorkgroup*/, bool /*includeTypekitLibrary*/) override {
    if (workgroupStatus == 0) *outWorkgroups = ToCFArray(workgroups).leakRef();
    return workgroupStatus;
  }

  int RemoveRemoteFonts(CFMutableArrayRef /*list*/) override { return 0; }

 private:
  const Font* Find(unsigned int fontID) const {
    return fontID >= 1 && fontID <= fonts.size() ? &fonts[fontID - 1] : nullptr;
  }

  Font* FindByName(const std::string& name) {
    for (Font& font : fonts) {
      if (FontValue(font.record.get(), kGM_PostScriptNameKey) == name) return &font;
    }
    return nullptr;
  }

  std::vector<const Font*> FindAll(const std::string& name, TypeOfFontName type) const {
    CFStringRef key = type == TypeOfFontName::kPostScriptName ? kGM_PostScriptNameKey : kGM_FamilyKey;
    std::vector<const Font*> found;
    for (const Font& font : fonts) {
      if (FontValue(font.record.get(), key) == name) found.push_back(&font);
    }
    return found;
  }

  static RetainPtr<CFMutableDictionaryRef> MakeMatchedRecord(const Font& font) {
    auto record = adoptCF(CFDictionaryCreateMutableCopy(nullptr, 0, font.record.get()));
    XCFUtils::PutULongIntoDictAsString(record.get(), kGM_DatabaseIDKey, font.fontID);
    XCFUtils::PutBoolIntoDictAsString(record.get(), kGM_IsActiveKey, font.state >= 2);
    return record;
  }

  static std::string SlugOf(CFDictionaryRef fontInfo) {
    auto list = MakeArray();
    CFArrayAppendValue(list.get(), fontInfo);
    const auto data =
        adoptCF(CFPropertyListCreateData(nullptr, list.get(), kCFPropertyListXMLFormat_v1_0, 0, nullptr));
    return std::string(reinterpret_cast<const char*>(CFDataGetBytePtr(data.get())),
                       static_cast<size_t>(CFDataGetLength(data.get())));
  }

  FontManagerInterface* previous_;
};
