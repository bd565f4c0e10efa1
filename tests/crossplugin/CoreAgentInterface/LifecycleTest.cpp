#include "Activation/FontActivationTracker.h"
#include "CoreAgentInterface/AgentTest.h"

namespace {

class LifecycleTest : public AgentTest {
 protected:
  LifecycleTest() { HornbeamGlobals::IdentifyPluginVersion(CFSTR("15.1.0")); }
  ~LifecycleTest() override {
    if (FontManagerInterface::GetFontManager() != nullptr) FontManagerInterface::OnHostAppShuttingDown();
    HornbeamGlobals::IdentifyPluginVersion(nullptr);
  }
};

TEST_F(LifecycleTest, VersionsAgreeInTheirFirstThreeFields) {
  const struct {
    const char *a, *b;
    bool compatible;
  } kCases[] = {
      {"", "", true},
      {"15.0.1", "15.0.1", true},
      {"", "1.0.0.0", false},
      {"1.0.0.0", "9.9", true},
      {"x", "1.0.0.0", true},
      {"15.0.1.100", "15.0.1.2", true},
      {"15.0.1.", "15.0.1.2", false},
      {"15.0.1", "15.0.2", false},
      {"15.0.1", "15.0.1.7", true},
      {"15.0.1.7", "15.0.1", true},
      {"15.0.1", "15.0.12", false},
      {"15.0", "15.0.1", true},
      {"15", "150", false},
      {"15.0.01", "15.0.1", false},
      {"1.2.3.4.5", "1.2.3.9.5", true},
  };
  for (const auto& row : kCases) {
    EXPECT_EQ(LiveAgent::VersionsAreCompatible(row.a, row.b), row.compatible) << row.a << " and " << row.b;
  }
}

TEST_F(LifecycleTest, TheManagerIsMadeOnceAndNamedByItsEdition) {
  CFStringRef name = nullptr;
  library.standalone = 0;
  EXPECT_TRUE(FontManagerInterface::CompatibleFontManagerIsRunning(&name));
  EXPECT_EQ(name, kSycamorePlugin);
  EXPECT_EQ(loom.Loom().GetStartupDictionary().GetStringForKey(CFSTR("FontManager")), "SycamorePlugin");
  FontManagerInterface* manager = FontManagerInterface::GetFontManager();
  ASSERT_NE(manager, nullptr);
  library.calls.clear();
  EXPECT_TRUE(FontManagerInterface::CompatibleFontManagerIsRunning(nullptr));
  EXPECT_EQ(FontManagerInterface::GetFontManager(), manager);
  EXPECT_EQ(library.calls, std::vector<std::string>{"GetIsCoreAgentProcessRunning(*)"});
}

TEST_F(LifecycleTest, AManagerThatIsNotCompatibleOrHasNoAgentStays) {
  for (const auto& [version, running] : {std::pair(CFSTR("15.2.0"), 1), std::pair(CFSTR("15.1.0"), 0)}) {
    HornbeamGlobals::IdentifyPluginVersion(version);
    library.running = running;
    EXPECT_FALSE(FontManagerInterface::CompatibleFontManagerIsRunning(nullptr));
    EXPECT_NE(FontManagerInterface::GetFontManager(), nullptr);
  }
}

TEST_F(LifecycleTest, OneMissingEntryIsNoLibrary) {
  ShuttleFunctions table = library.Loader();
  table.pfWriteFontUsage = nullptr;
  ShuttleLoader lacking(table, "/fake", "15.1.0");
  ShuttleLoader* before = ShuttleLoader::ReplaceSharedInstanceForTesting(&lacking);
  EXPECT_FALSE(FontManagerInterface::CompatibleFontManagerIsRunning(nullptr));
  EXPECT_EQ(FontManagerInterface::GetFontManager(), nullptr);
  EXPECT_TRUE(library.calls.empty());
  ShuttleLoader::ReplaceSharedInstanceForTesting(before);
}

TEST_F(LifecycleTest, ComingBackInFromAMessageBoxIsNotCompatible) {
  library.running = 0;
  bool inner = true;
  loom.duringBox = [&inner] { inner = FontManagerInterface::CompatibleFontManagerIsRunning(nullptr); };
  FontManagerInterface::CompatibleFontManagerIsRunning(nullptr);
  EXPECT_FALSE(inner);
}

TEST_F(LifecycleTest, AQuitWhileTheManagerIsMadeWaitsForIt) {
  library.running = 0;
  loom.duringBox = [] { FontManagerInterface::OnHostAppShuttingDown(); };
  EXPECT_FALSE(FontManagerInterface::CompatibleFontManagerIsRunning(nullptr));
  EXPECT_EQ(FontManagerInterface::GetFontManager(), nullptr);
  EXPECT_EQ(library.CountCalls("DestroyThreadInstance"), 1);
}

TEST_F(LifecycleTest, FontsAreDeactivatedAtQuitWhenEverythingAllowsIt) {
  const struct {
    const char* name;
    bool closeOnQuit, pluginEnabled, services;
    int loggedIn;
    bool deactivates;
  } kCases[] = {
      {"deactivates", true, true, true, 1, true},    {"preference off", false, true, true, 1, false},
      {"plug-in off", true, false, true, 1, false},  {"services off", true, true, false, 1, false},
      {"not logged in", true, true, true, 0, false},
  };
  for (const auto& row : kCases) {
    SCOPED_TRACE(row.name);
    library.loggedIn = 1;
    SetFlags(true);
    loom.SetPreference("EnablePlugin", 1);
    ASSERT_TRUE(FontManagerInterface::CompatibleFontManagerIsRunning(nullptr));
    FontActivationTracker* tracker = HornbeamGlobals::GetSharedFontActivationTracker();
    const unsigned int fontID = library.AddFont("A", 1);
    tracker->RegisterFontWithDocument(MakeMatchedFont("A", fontID).get(), CFSTR("A"), fontID, false, "doc",
                                      nullptr);
    loom.SetPreference("CloseFontsOnHostAppQuit", row.closeOnQuit);
    loom.SetPreference("EnablePlugin", row.pluginEnabled);
    HornbeamGlobals::SetPluginServicesEnabled(row.services);
    library.loggedIn = row.loggedIn;
    library.calls.clear();

    FontManagerInterface::OnHostAppShuttingDown();
    EXPECT_EQ(library.CountCalls("DeactivateFonts"), row.deactivates ? 1 : 0);
    EXPECT_EQ(library.CountCalls("UnregisterForNotifications"), 1);
    EXPECT_EQ(library.CountCalls("DestroyThreadInstance"), 1);
    EXPECT_EQ(FontManagerInterface::GetFontManager(), nullptr);
    EXPECT_EQ(library.callback, nullptr);
  }
}

}  // namespace
