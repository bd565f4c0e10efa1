#include <dlfcn.h>
#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <memory>
#include <string>

namespace {

const std::string kFramework = HORNBEAM_STAGE "/lib/hornbeam/Kiln/TalworthPluginInterface.framework";

constexpr const char* kEntries[] = {"ActivateFonts",
                                    "ActivateDocumentFontsByPath",
                                    "AddFontsToSets",
                                    "BeginLogging",
                                    "CanExportFonts",
                                    "CreateTopLevelSet",
                                    "DeactivateFonts",
                                    "DestroyThreadInstance",
                                    "EnableDesignActivation",
                                    "ExportFonts",
                                    "FindFontsInSameFamilyForActivation",
                                    "GetActivationStateColumnID",
                                    "GetAllWorkgroupsForUser",
                                    "GetAreSchemaVersionsInSync",
                                    "RegisterForNotifications",
                                    "UnregisterForNotifications",
                                    "GetCanActivateAcrossWorkgroupsColumnID",
                                    "GetClientFontActivationStates",
                                    "GetDefaultLibraryName",
                                    "GetExportFontsColumnID",
                                    "GetFamilyGroupIDColumnID",
                                    "GetFamilyGroupNameColumnID",
                                    "GetFamilyNameColumnID",
                                    "GetFileSizeColumnID",
                                    "GetFontFaceIDColumnID",
                                    "GetFontInfoByID",
                                    "GetFontIsActivated",
                                    "GetFontLocationColumnID",
                                    "GetGlyphMarkChecksumColumnID",
                                    "GetFontTypeColumnID",
                                    "GetFontVaultPath",
                                    "GetFontVersionColumnID",
                                    "GetFontsByPostscriptName",
                                    "GetFontsByFamilyName",
                                    "GetFoundryNameColumnID",
                                    "GetIsCoreAgentProcessRunning",
                                    "GetIsFontLocalColumnID",
                                    "GetIsLoggedIn",
                                    "GetRunningStandalone",
                                    "GetIsHornbeamFileColumnID",
                                    "GetLegacyGlyphMarkChecksumColumnID",
                                    "GetLocalPathColumnID",
                                    "GetPermission",
                                    "GetPluginFacadeInstance",
                                    "ResetPluginFacadeInstance",
                                    "GetPostscriptNameColumnID",
                                    "GetDisplayNameColumnID",
                                    "GetScannedFoundryColumnID",
                                    "GetSystemWorkgroupID",
                                    "GetWorkgroupIDColumnID",
                                    "GetWorkgroupNameColumnID",
                                    "GetWorkgroupTypeColumnID",
                                    "InitAppInstance",
                                    "InitThreadInstance",
                                    "IsAllWorkgroups",
                                    "Log",
                                    "OSCreateDirectory",
                                    "OSDoesDirectoryExist",
                                    "PreviewActivateFonts",
                                    "GetGoogleFonts",
                                    "GetIsReplicationRunning",
                                    "GetCurrentReplicationMode",
                                    "GetIsGoogleWebFontsEnabled",
                                    "SetGoogleWebFontsEnabled",
                                    "GetRenderedPNGsDirectory",
                                    "RenderFontNamePreviewPNGs",
                                    "RenameSmartList",
                                    "DeleteSmartList",
                                    "GetSmartList",
                                    "GetPanelSmartListTree",
                                    "QueryForSmartListFonts",
                                    "GetAllSmartLists",
                                    "CreateSmartList",
                                    "SetSmartListQuery",
                                    "GetSmartListFonts",
                                    "CleanUpOnShutdown",
                                    "GetFontConflicts",
                                    "TrackFontPanelClick",
                                    "CanAccessGoogleFonts",
                                    "SaveDocumentFonts",
                                    "GetFontUsage",
                                    "GetAdobeXMPData",
                                    "GetGlyphMarkXMPData",
                                    "WriteFontUsage"};
static_assert(std::size(kEntries) == 84);

// The framework lives beside the test's own copy of the library, as beside any other in a foreign process.
TEST(FrameworkTest, ExportsEveryEntryByItsPlainNameAndNothingOfItsInside) {
  const std::unique_ptr<void, int (*)(void*)> library(
      dlopen((kFramework + "/TalworthPluginInterface").c_str(), RTLD_NOW | RTLD_LOCAL), &dlclose);
  ASSERT_NE(library, nullptr) << dlerror();
  for (const char* name : kEntries) EXPECT_NE(dlsym(library.get(), name), nullptr) << name;
  for (const char* name : {"KilnLibraryAddPaths", "KilnLibraryListFonts", "KilnLibraryStatus"}) {
    EXPECT_NE(dlsym(library.get(), name), nullptr) << name;
  }
  EXPECT_EQ(dlsym(library.get(), "_ZN10ConnectionD1Ev"), nullptr);
}

TEST(FrameworkTest, TellsItsNameAndVersion) {
  std::ifstream file(kFramework + "/Info.plist");
  const std::string text{std::istreambuf_iterator<char>(file), {}};
  EXPECT_NE(text.find("<string>com.talworth.PluginInterface</string>"), std::string::npos);
  EXPECT_NE(text.find("<key>CFBundleShortVersionString</key>"), std::string::npos);
  EXPECT_EQ(text.find('@'), std::string::npos);
}

}  // namespace
