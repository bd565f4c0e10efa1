#include <gtest/gtest.h>

#include "Activation/CommonFunctionality.h"
#include "Activation/FontActivationTracker.h"
#include "Activation/State/HornbeamGlobals.h"
#include "support/FakeClientLibrary.h"
#include "support/FakeFontManager.h"
#include "support/FakeLoom.h"

namespace {

using Messages = std::vector<std::string>;

// A manager that is there before the start-up, as after an earlier one; the host's version isn't asked for
// unless a test demands a prefix.
class CommonFunctionalityTest : public testing::Test {
 protected:
  CommonFunctionalityTest() {
    CommonFunctionality::ResetCallCountersForTesting();
    FakeFontManager::ResetSelection();
    HornbeamGlobals::IdentifyPluginHostApp(CFSTR("InDesign"));
    loom.SetPreference("EnablePlugin", 1);
  }
  ~CommonFunctionalityTest() override {
    HornbeamGlobals::CleanUpOnShutdown();
    HornbeamGlobals::IdentifyPluginHostAppVersionPrefix(nullptr);
    HornbeamGlobals::SetLoggedIn(false);
    HornbeamGlobals::SetUserHasWorkgroups(false);
    FakeFontManager::ResetSelection();
  }

  // The manager as the facade owns it: OnHostAppShuttingDown() deletes it.
  FakeFontManager* manager = new FakeFontManager;
  FakeClientLibrary library;
  FakeLoom loom;
};

TEST_F(CommonFunctionalityTest, AllWellMeansServicesAndTheAgentsLog) {
  EXPECT_EQ(0, CommonFunctionality::Startup(true));
  EXPECT_TRUE(HornbeamGlobals::ArePluginServicesEnabled());
  EXPECT_TRUE(HornbeamGlobals::ConnectedToCore());
  EXPECT_EQ("BeginLogging('InDesign.log')", library.LastCall("BeginLogging"));
  EXPECT_EQ(Messages{}, loom.Messages());
  EXPECT_EQ(-1, CommonFunctionality::Startup(true)) << "only the first call does the work";
  EXPECT_EQ(1, library.CountCalls("BeginLogging"));
  CommonFunctionality::Shutdown();
}

TEST_F(CommonFunctionalityTest, FailuresSwitchOffAndTellOnce) {
  struct Case {
    const char* name;
    const char* prefix;
    bool running;
    bool allowDialogs;
    Messages messages;
  };
  for (const Case& row : {Case{"host", "15", true, true, {"UnsupportedHostAppMessage"}},
                          Case{"host before manager", "15", false, true, {"UnsupportedHostAppMessage"}},
                          Case{"manager", "", false, true, {"HornbeamOldVersionMessage"}},
                          Case{"quiet", "15", false, false, {}}}) {
    CommonFunctionality::ResetCallCountersForTesting();
    HornbeamGlobals::IdentifyPluginHostAppVersionPrefix(ToCFString(row.prefix).get());
    manager->running = row.running;
    loom.boxes.clear();
    EXPECT_EQ(-1, CommonFunctionality::Startup(row.allowDialogs)) << row.name;
    EXPECT_FALSE(HornbeamGlobals::ArePluginServicesEnabled()) << row.name;
    EXPECT_FALSE(HornbeamGlobals::ConnectedToCore()) << row.name;
    EXPECT_EQ(row.messages, loom.Messages()) << row.name;
  }
  CommonFunctionality::Shutdown();
}

TEST_F(CommonFunctionalityTest, LoggedOutLeavesTheServicesToTheLogin) {
  manager->loggedIn = false;
  EXPECT_EQ(0, CommonFunctionality::Startup(false));
  EXPECT_EQ((Messages{"NotLoggedInPluginDisabledMessage"}), loom.Messages()) << "shown without dialogs too";
  EXPECT_FALSE(HornbeamGlobals::ArePluginServicesEnabled());
  HornbeamGlobals::SetLoggedIn(true);
  EXPECT_TRUE(HornbeamGlobals::ArePluginServicesEnabled());
  CommonFunctionality::Shutdown();
}

TEST_F(CommonFunctionalityTest, PreferencesAreWrittenOnceInTheirOrder) {
  EXPECT_EQ(0, CommonFunctionality::InitializeCommonPreferences()) << "the user has some";
  loom.preferences.clear();
  EXPECT_EQ(1, CommonFunctionality::InitializeCommonPreferences());
  const std::map<std::string, long> expected = {
      {"EnablePlugin", 1},         {"EnableGlyphMark", 1},        {"DialogSuppression", 1},
      {"PickBestMatch", 1},        {"SupportEmbeddedObjects", 1}, {"CloseFontsOnHostAppQuit", 1},
      {"CloseFontsOnDocClose", 0}, {"ActivateEntireFamilies", 0}, {"CS5PanelWidth", 260},
      {"CS5PanelHeight", 350},     {"DropDownSelection", 0}};
  EXPECT_EQ(expected, loom.preferences);
  EXPECT_EQ(0, CommonFunctionality::InitializeCommonPreferences());
  delete manager;
}

TEST_F(CommonFunctionalityTest, QuitWhileABoxOfTheStartUpIsUpIsWorkedOffAtItsEnd) {
  manager->loggedIn = false;
  loom.duringBox = [] {
    EXPECT_EQ(-1, CommonFunctionality::Startup(true));
    CommonFunctionality::Shutdown();
    EXPECT_NE(nullptr, FontManagerInterface::GetFontManager()) << "not under the feet of the start-up";
  };
  CommonFunctionality::Startup(true);
  EXPECT_EQ(nullptr, FontManagerInterface::GetFontManager());
}

}  // namespace
