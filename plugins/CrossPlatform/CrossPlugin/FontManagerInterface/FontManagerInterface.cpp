#include "FontManagerInterface/FontManagerInterface.h"

#include "Activation/Vocabulary/StatusCodes.h"

const CFStringRef kHornbeamStudioPlugin = CFSTR("HornbeamStudioPlugin");
const CFStringRef kSycamorePlugin = CFSTR("SycamorePlugin");

GMutex FontManagerInterface::sm_Mutex;
std::atomic<FontManagerInterface*> FontManagerInterface::sm_pFontManager{nullptr};
bool FontManagerInterface::sValidWorkgroupSelected = true;
bool FontManagerInterface::sSelectWorkgroupInProgress = false;

FontManagerInterface* FontManagerInterface::GetConnectedFontManager() {
  FontManagerInterface* manager = GetFontManager();
  return manager && manager->IsFontManagerConnected() ? manager : nullptr;
}

// Names and lists come by value where the facade's published table has them so.
// NOLINTBEGIN(performance-unnecessary-value-param)

bool FontManagerInterface::ConnectedToHornbeam() {
  return false;
}
bool FontManagerInterface::ConnectedToHornbeamStudio() {
  return false;
}
bool FontManagerInterface::ConnectedToCoreAgent() {
  return false;
}
bool FontManagerInterface::RunningStandalone() {
  return true;
}
bool FontManagerInterface::GoogleWebFontsEnabled() {
  return false;
}
int16_t FontManagerInterface::DisconnectFromFontManager() {
  return 0;
}
void FontManagerInterface::OnServerConnectionLost() {}
bool FontManagerInterface::IsFontManagerConnected() {
  return true;
}
void FontManagerInterface::SetFontManagerConnected(bool /*connected*/) {}
void FontManagerInterface::DoEnableLDConnection() {}
bool FontManagerInterface::FontManagerIsClientServer() {
  return true;
}
int FontManagerInterface::SetFontAutoActivationStatus(bool /*enabled*/) {
  return 0;
}

int FontManagerInterface::FontIDsForPostScriptName(const std::string& /*name*/, long /*workgroupID*/,
                                                   std::vector<unsigned long>& /*outIDs*/) {
  return kErrorNotDone;
}

int FontManagerInterface::FontIDsForFamilyName(const std::string& /*name*/, long /*workgroupID*/,
                                               std::vector<unsigned long>& /*outIDs*/) {
  return kErrorNotDone;
}

std::map<unsigned int, bool> FontManagerInterface::GetClientFontActivationStates(
    std::vector<unsigned int> fontIDs) {
  std::map<unsigned int, bool> states;
  for (unsigned int fontID : fontIDs) {
    if (fontID != 0) states[fontID] = true;
  }
  return states;
}

std::map<unsigned int, unsigned int> FontManagerInterface::GetFontConflicts(
    std::vector<unsigned int> /*fontIDs*/) {
  return {};
}

int FontManagerInterface::CountNamedFonts(std::string /*name*/, TypeOfFontName /*type*/, long /*workgroupID*/,
                                          long* outCount, std::string& /*outToken*/) {
  if (outCount) *outCount = 0;
  return kErrorNotDone;
}

int FontManagerInterface::GetNamedFontInfo(std::string /*name*/, TypeOfFontName /*type*/,
                                           long /*workgroupID*/, long /*index*/, std::string /*token*/,
                                           FontOrSetInfoRec* /*outRec*/) {
  return kErrorNotDone;
}

int FontManagerInterface::GetFontInfoByID(CFDictionaryRef /*font*/, FontOrSetInfoRec* /*outRec*/) {
  return kErrorNotDone;
}

int FontManagerInterface::GetPostscriptNameByID(CFStringRef& /*outName*/, int /*workgroupID*/,
                                                unsigned int /*fontID*/) {
  return kErrorNotDone;
}

int FontManagerInterface::GetGlyphMarkInfo(unsigned int /*databaseID*/, CFDictionaryRef /*fontInfo*/,
                                           char* /*outXMLBuffer*/, unsigned long* /*inOutBufferSize*/) {
  return kErrorNotDone;
}

int FontManagerInterface::EndGetGlyphMarkInfo(std::string /*token*/) {
  return 0;
}

int FontManagerInterface::FindFontsInSameFamilyForActivation(CFDictionaryRef /*font*/,
                                                             CFArrayRef /*matchedFonts*/, int /*workgroupID*/,
                                                             CFMutableArrayRef /*outFontsInFamily*/) {
  return kErrorNotDone;
}

int16_t FontManagerInterface::MakeSetForDocumentFonts(CFStringRef /*documentName*/, CFArrayRef /*fonts*/) {
  return kErrorNotDone;
}

int16_t FontManagerInterface::CollectFontsUsedByCurrentDocument(const std::string& /*documentName*/,
                                                                const std::string& /*documentPath*/,
                                                                CFArrayRef /*fonts*/) {
  return kErrorNotDone;
}

int FontManagerInterface::ProcessNotifications() {
  return 0;
}
bool FontManagerInterface::AreSchemaVersionsInSync() {
  return true;
}
bool FontManagerInterface::CheckForWorkgroups() {
  return true;
}
bool FontManagerInterface::IsAllWorkgroups(int workgroupID) {
  return workgroupID == kAllWorkgroups;
}
bool FontManagerInterface::IsSelectedWorkgroupLocal() {
  return false;
}
bool FontManagerInterface::IsRemoteWorkgroupTypeDisabled(long /*type*/) {
  return false;
}
bool FontManagerInterface::CanActivateFromAllWorkgroups() {
  return false;
}
bool FontManagerInterface::CanExportFromWorkgroup(CFArrayRef /*fonts*/) {
  return false;
}
bool FontManagerInterface::CannotExportFromSomeWorkgroup() {
  return false;
}
bool FontManagerInterface::IsRunning() {
  return false;
}
bool FontManagerInterface::IsLoggedIn() {
  return true;
}
bool FontManagerInterface::IsOnline() {
  return true;
}
int FontManagerInterface::GoOnline() {
  return kErrorNotDone;
}
int FontManagerInterface::GoOffline() {
  return kErrorNotDone;
}
bool FontManagerInterface::IsWindows() {
  return false;
}
void FontManagerInterface::DoOnlineOffline() {}

// NOLINTEND(performance-unnecessary-value-param)
