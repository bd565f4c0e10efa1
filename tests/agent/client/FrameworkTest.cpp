#include <dlfcn.h>
#include <gtest/gtest.h>

#include <memory>
#include <sstream>
#include <string>

namespace {

const std::string kFramework = HORNBEAM_STAGE "/lib/hornbeam/Kiln/TalworthPluginInterface.framework";

// The 84 entries.
constexpr char kEntries[] = R"(
ActivateFonts ActivateDocumentFontsByPath AddFontsToSets BeginLogging CanExportFonts CreateTopLevelSet
DeactivateFonts DestroyThreadInstance EnableDesignActivation ExportFonts FindFontsInSameFamilyForActivation
GetActivationStateColumnID GetAllWorkgroupsForUser GetAreSchemaVersionsInSync RegisterForNotifications
UnregisterForNotifications GetCanActivateAcrossWorkgroupsColumnID GetClientFontActivationStates
GetDefaultLibraryName GetExportFontsColumnID GetFamilyGroupIDColumnID GetFamilyGroupNameColumnID
GetFamilyNameColumnID GetFileSizeColumnID GetFontFaceIDColumnID GetFontInfoByID GetFontIsActivated
GetFontLocationColumnID GetGlyphMarkChecksumColumnID GetFontTypeColumnID GetFontVaultPath
GetFontVersionColumnID GetFontsByPostscriptName GetFontsByFamilyName GetFoundryNameColumnID
GetIsCoreAgentProcessRunning GetIsFontLocalColumnID GetIsLoggedIn GetRunningStandalone
GetIsHornbeamFileColumnID GetLegacyGlyphMarkChecksumColumnID GetLocalPathColumnID GetPermission
GetPluginFacadeInstance ResetPluginFacadeInstance GetPostscriptNameColumnID GetDisplayNameColumnID
GetScannedFoundryColumnID GetSystemWorkgroupID GetWorkgroupIDColumnID GetWorkgroupNameColumnID
GetWorkgroupTypeColumnID InitAppInstance InitThreadInstance IsAllWorkgroups Log OSCreateDirectory
OSDoesDirectoryExist PreviewActivateFonts GetGoogleFonts GetIsReplicationRunning GetCurrentReplicationMode
GetIsGoogleWebFontsEnabled SetGoogleWebFontsEnabled GetRenderedPNGsDirectory RenderFontNamePreviewPNGs
RenameSmartList DeleteSmartList GetSmartList GetPanelSmartListTree QueryForSmartListFonts GetAllSmartLists
CreateSmartList SetSmartListQuery GetSmartListFonts CleanUpOnShutdown GetFontConflicts TrackFontPanelClick
CanAccessGoogleFonts SaveDocumentFonts GetFontUsage GetAdobeXMPData GetGlyphMarkXMPData WriteFontUsage)";

// Those of the library's own programs.
constexpr char kLibraryEntries[] = R"(
KilnLibraryAddPaths KilnLibraryListFonts KilnLibraryDeactivateFonts KilnLibraryCreateWorkgroup
KilnLibraryRenameWorkgroup KilnLibraryDeleteWorkgroup KilnLibraryChangeWorkgroupFonts
KilnLibraryListWorkgroups KilnLibrarySetRefused KilnLibraryListSets KilnLibraryDeleteSet
KilnLibraryExportFonts KilnLibraryLogIn KilnLibraryLogOut KilnLibraryServerState KilnLibrarySetGoogle
KilnLibraryGoogleState KilnLibraryRescan KilnLibraryStatus)";

// The framework lives beside the test's own copy of the library, as beside any other in a foreign process.
TEST(FrameworkTest, ExportsEveryEntryByItsPlainNameAndNothingOfItsInside) {
  const std::unique_ptr<void, int (*)(void*)> library(
      dlopen((kFramework + "/TalworthPluginInterface").c_str(), RTLD_NOW | RTLD_LOCAL), &dlclose);
  ASSERT_NE(library, nullptr) << dlerror();
  std::istringstream entries(std::string(kEntries) + kLibraryEntries);
  int count = 0;
  for (std::string name; entries >> name; ++count) {
    EXPECT_NE(dlsym(library.get(), name.c_str()), nullptr) << name;
  }
  EXPECT_EQ(count, 84 + 19);
  EXPECT_EQ(dlsym(library.get(), "_ZN10ConnectionD1Ev"), nullptr);
}

}  // namespace
