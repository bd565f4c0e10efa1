#include <gtest/gtest.h>

#include <functional>

#include "LoomInterface/LoomInterface.h"
#include "LoomInterface/PreferenceKeys.h"
#include "support/FakeFontManager.h"
#include "support/FakeLoom.h"
#include "support/FakeSystem.h"
#include "support/ScopedEnvironment.h"
#include "support/ScopedReplacement.h"
#include "support/TemporaryFolder.h"

namespace {

// ---- Starting.

CFMutableDictionaryRef sStartup = nullptr;

TEST(LoomStart, StatusTellsWhatFailed) {
  const struct {
    const char* name;
    std::function<void(LoomFunctions&)> change;
    int status;
  } kCases[] = {
      {"up", [](LoomFunctions&) {}, LoomInterface::kUp},
      {"refuses the version",
       [](LoomFunctions& table) { table.pfLoomIsVersionCompatible = [](const char*) { return false; }; },
       LoomInterface::kVersionRefused},
      {"lacks the version check", [](LoomFunctions& table) { table.pfLoomIsVersionCompatible = nullptr; },
       LoomInterface::kVersionRefused},
      {"fails to start",
       [](LoomFunctions& table) {
         table.pfLoomInitializeFramework = [](CFMutableDictionaryRef) { return 5; };
       },
       LoomInterface::kInitializationFailed},
      {"can't be started", [](LoomFunctions& table) { table.pfLoomInitializeFramework = nullptr; },
       LoomInterface::kInitializationFailed},
  };
  for (const auto& row : kCases) {
    SCOPED_TRACE(row.name);
    LoomFunctions table = FakeLoom::Table();
    row.change(table);
    FakeLoom framework(table);
    framework.SetPreference("PickBestMatch", 1);
    const bool up = row.status == LoomInterface::kUp;
    EXPECT_EQ(framework.Loom().GetError(), row.status);
    EXPECT_EQ(framework.Loom().IsValid(), up);
    EXPECT_EQ(framework.Loom().GetOpaqueOsData() != nullptr, up);
    EXPECT_EQ(framework.Loom().GetPickBestMatch(), up);
    framework.Loom().ShowGoOnlineErrorMessageBox();
    EXPECT_EQ(framework.boxes.size(), up ? 1u : 0u);
  }
}

TEST(LoomStart, FrameworkIsToldWhoStartsIt) {
  LoomFunctions table = FakeLoom::Table();
  table.pfLoomInitializeFramework = [](CFMutableDictionaryRef startup) {
    sStartup = startup;
    return 0;
  };
  FakeLoom framework(table);
  EXPECT_EQ(FontValue(sStartup, CFSTR("HostApp")), "InDesign");
  EXPECT_EQ(FontValue(sStartup, CFSTR("PluginVersion")), "15.1.0");
  EXPECT_EQ(FontValue(sStartup, CFSTR("TalworthPluginInterfaceVersion")), "15.1.0");
  framework.Loom().SetFontManagerBundleName(CFSTR("SycamorePlugin"));
  EXPECT_EQ(FontValue(sStartup, CFSTR("FontManager")), "SycamorePlugin") << "seen by the running framework";
}

TEST(LoomStart, ATableWithHolesAnswersNeutrally) {
  LoomFunctions table;
  table.pfLoomIsVersionCompatible = [](const char*) { return true; };
  table.pfLoomInitializeFramework = [](CFMutableDictionaryRef) { return 0; };
  FakeLoom framework(table);
  LoomInterface& loom = framework.Loom();
  EXPECT_TRUE(loom.IsValid());
  EXPECT_FALSE(loom.GetEnabledAutoActivationPref());
  loom.SetPreferenceForKey(kEnablePluginPrefKey, true);
  loom.SetCurrentWorkgroupID(5);
  EXPECT_EQ(loom.GetCurrentWorkgroupID(), 0);
  EXPECT_FALSE(loom.DoPreferencesExist());
  EXPECT_EQ(loom.ShowMessageBox(CFSTR("a"), CFSTR("b"), 2), 0);
  EXPECT_EQ(loom.GetHostAppDisplayName(), nullptr);
  const auto text = adoptCF(loom.LocalizedString(CFSTR("key")));
  EXPECT_EQ(ToStdString(text.get()), "key");
  CFStringRef answer = nullptr;
  EXPECT_FALSE(loom.AskForOneString(CFSTR("t"), CFSTR("p"), CFSTR("d"), &answer));
  loom.ShowAboutBox();
  loom.ShowPreferences();
  loom.ShowResolveFonts(nullptr);
  loom.SetIsOnline(false);
}

// ---- Finding.

// A framework without code can't tell whether it is compatible: that it was found shows in the status.
TEST(LoomSearch, FrameworkIsFoundBesideTheAgentAndInTheFixedPlace) {
  for (const auto& [place, status] : {std::pair("Kiln/PluginFiles", LoomInterface::kVersionRefused),
                                      std::pair("Library/Frameworks", LoomInterface::kVersionRefused),
                                      std::pair("Elsewhere", LoomInterface::kFrameworkNotFound)}) {
    SCOPED_TRACE(place);
    const TemporaryFolder machine;
    const ScopedEnvironment root("PLATFORM_SYSTEM_ROOT", machine.Path());
    const ScopedEnvironment data("XDG_DATA_HOME", machine.Path("data"));
    FakeProcesses processes;
    const ScopedReplacement<platform::Processes> replaced(processes);
    machine.Write(std::string(place) + "/TalworthPlugins.framework/Info.plist", "");
    processes.running = {{7, machine.Path("Kiln/Kiln")}};
    const LoomInterface loom(CFSTR("InDesign"), nullptr, nullptr, nullptr);
    EXPECT_EQ(loom.GetError(), status);
    EXPECT_FALSE(loom.IsValid());
  }
}

// ---- Preferences.

TEST(LoomPreferences, WorkgroupKeepsItsSign) {
  FakeLoom framework;
  framework.Loom().SetCurrentWorkgroupID(-2);
  EXPECT_EQ(framework.GetPreference("CurrentWorkgroup"), -2);
  framework.SetPreference("CurrentWorkgroup", 0xFFFFFFFE);
  EXPECT_EQ(framework.Loom().GetCurrentWorkgroupID(), -2);
}

TEST(LoomPreferences, TheNextGenerationPluginSwitchesGlyphMarkOn) {
  FakeLoom framework;
  EXPECT_FALSE(framework.Loom().GetEnabledGlyphMark());
  TemporaryFolder folder;
  folder.Write("Core.bundle/Info.plist",
               "<?xml version=\"1.0\" encoding=\"UTF-8\"?><plist version=\"1.0\"><dict>"
               "<key>CFBundleIdentifier</key><string>com.talworth.PluginCore</string></dict></plist>");
  const auto bundle = adoptCF(CFBundleCreate(nullptr, ToCFURL(folder.Path("Core.bundle"), true).get()));
  EXPECT_TRUE(framework.Loom().isHostAppUsingNextGenPlugin());
  EXPECT_TRUE(framework.Loom().GetEnabledGlyphMark());
}

// ---- Message boxes.

TEST(LoomMessageBoxes, ThoseThatDependOnTheEditionOrTheCaseShowTheirKeys) {
  using Loom = LoomInterface;
  const struct {
    std::function<void(Loom&)> show;
    bool standalone;
    const char* box;
  } kCases[] = {
      {&Loom::ShowCoreAgentMissingMessageBox, false, "SYCoreAgentMissingHeader|SYCoreAgentMissingMessage|2"},
      {&Loom::ShowNoWorkgroupsMessageBox, true, "NoLibrariesHeader|NoLibrariesMessage|1"},
      {&Loom::ShowNoWorkgroupsMessageBox, false, "NoWorkgroupsHeader|NoWorkgroupsMessage|1"},
      {&Loom::ShowCoreAgentOutOfSyncMessageBox, true,
       "HSCoreAgentOutOfSyncHeader|HSCoreAgentOutOfSyncMessage|1"},
      {&Loom::ShowCoreAgentOutOfSyncMessageBox, false,
       "SYCoreAgentOutOfSyncHeader|SYCoreAgentOutOfSyncMessage|1"},
      {[](Loom& loom) { loom.ShowNotLoggedInMessageBox(true); }, true,
       "NotLoggedInHeader|NotLoggedInOfferLoginMessage|1"},
      {[](Loom& loom) { loom.ShowNotLoggedInMessageBox(false); }, true,
       "NotLoggedInHeader|NotLoggedInPluginDisabledMessage|1"},
      {[](Loom& loom) { loom.ShowFontsMissingForExportMessageBox(true); }, true,
       "MissingFontsExportHeader|MissingFontsOfflineExportMessage|1"},
      {[](Loom& loom) { loom.ShowFontsMissingForExportMessageBox(false); }, true,
       "MissingFontsExportHeader|MissingFontsExportMessage|1"},
  };
  FakeLoom framework;
  FakeFontManager manager;
  for (const auto& row : kCases) {
    manager.standalone = row.standalone;
    framework.boxes.clear();
    row.show(framework.Loom());
    EXPECT_EQ(framework.boxes, std::vector<std::string>{row.box});
  }
}

TEST(LoomMessageBoxes, AVaultSentenceTakesThePathWhereItAsksForIt) {
  FakeLoom framework;
  framework.sentences = {{"CouldNotOpenVaultLaunchPrefs", "The vault \"%@\" can't be opened."}};
  framework.Loom().ShowVaultNotAvailableMessage(CFSTR("/v"));
  EXPECT_EQ(framework.Messages(), std::vector<std::string>{"The vault \"/v\" can't be opened."});
}

std::string sHostMessage;

TEST(LoomMessageBoxes, TheHostTellsThatThereIsNoFramework) {
  LoomFunctions table = FakeLoom::Table();
  table.pfLoomIsVersionCompatible = nullptr;
  FakeLoom framework(table);
  framework.Loom().ShowLoomNotFoundMessageBox();
  EXPECT_EQ(sHostMessage, "");
  LoomInterface::SetHostMessageProc([](CFStringRef text) { sHostMessage = ToStdString(text); });
  framework.Loom().ShowLoomNotFoundMessageBox();
  LoomInterface::SetHostMessageProc(nullptr);
  EXPECT_TRUE(sHostMessage.starts_with("The Talworth plug-in could not locate a running copy of"));
  EXPECT_TRUE(framework.boxes.empty());
}

}  // namespace
