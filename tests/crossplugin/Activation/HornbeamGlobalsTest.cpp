#include <gtest/gtest.h>

#include "Activation/FontActivationTracker.h"
#include "Activation/State/HornbeamGlobals.h"
#include "support/FakeClientLibrary.h"
#include "support/FakeLoom.h"

namespace {

class HornbeamGlobalsTest : public testing::Test {
 protected:
  ~HornbeamGlobalsTest() override {
    HornbeamGlobals::IdentifyPluginBundleID(nullptr);
    HornbeamGlobals::IdentifyPluginHostApp(nullptr);
    SetFlags(false, false, false);
  }

  static void SetFlags(bool services, bool loggedIn, bool workgroups) {
    HornbeamGlobals::SetPluginServicesEnabled(services);
    HornbeamGlobals::SetLoggedIn(loggedIn);
    HornbeamGlobals::SetUserHasWorkgroups(workgroups);
  }
};

TEST_F(HornbeamGlobalsTest, ServicesNeedLoginAndWorkgroups) {
  for (int bits = 0; bits < 8; ++bits) {
    SetFlags((bits & 1) != 0, (bits & 2) != 0, (bits & 4) != 0);
    EXPECT_EQ(bits == 7, HornbeamGlobals::ArePluginServicesEnabled()) << bits;
  }
}

TEST_F(HornbeamGlobalsTest, HostCodeDecidesTypeAndCategory) {
  struct Case {
    const char* hostApp;
    int type;
    const char* category;
    bool isAfterEffects;
  };
  for (const Case& row : {Case{"InDesignCC2020", 4, "id", false}, Case{"InCopyCC2020", 5, "id", false},
                          Case{"IllustratorCC2020", 3, "ai", false}, Case{"PhotoshopCC", 2, "ps", false},
                          Case{"AfterEffectsCC2020", 7, "ae", true}, Case{"AECC2015", 0, "ae", true},
                          Case{"BohemianSketch", 0, "sk", false}, Case{"sketch3", 0, "sk", false},
                          Case{"XInDesign", 0, "", false}, Case{"", 0, "", false}}) {
    HornbeamGlobals::IdentifyPluginHostApp(ToCFString(row.hostApp).get());
    EXPECT_EQ(row.type, HornbeamGlobals::GetHostTypeFromHostAppID()) << row.hostApp;
    EXPECT_EQ(row.category, HornbeamGlobals::GetHostAppCategory()) << row.hostApp;
    EXPECT_EQ(row.isAfterEffects, HornbeamGlobals::HostAppIsAfterEffects()) << row.hostApp;
  }
}

TEST_F(HornbeamGlobalsTest, BundleIDStandsInForTheHostCode) {
  HornbeamGlobals::IdentifyPluginHostApp(nullptr);
  EXPECT_EQ("", HornbeamGlobals::GetPluginHostApp());
  HornbeamGlobals::IdentifyPluginBundleID(CFSTR("com.talworth.AutoActivationPlugin.AE140"));
  HornbeamGlobals::IdentifyPluginHostApp(nullptr);
  EXPECT_EQ("AfterEffectsCC2017", HornbeamGlobals::GetPluginHostApp());
  HornbeamGlobals::IdentifyPluginHostApp(CFSTR("InDesign"));
  EXPECT_EQ("InDesign", HornbeamGlobals::GetPluginHostApp());
  EXPECT_EQ("", HornbeamGlobals::MapBundleIDtoHostApp(CFSTR("com.talworth.AutoActivationPlugin.ID15")));
}

TEST_F(HornbeamGlobalsTest, ShutdownDropsTheSharedObjectsAndTheIdentity) {
  const FakeLoom loom;
  const FakeClientLibrary library;
  HornbeamGlobals::SetPluginServicesEnabled(true);
  HornbeamGlobals::IdentifyPluginHostApp(CFSTR("InDesign"));
  HornbeamGlobals::IdentifyPluginVersion(CFSTR("15.1.0"));
  EXPECT_EQ(HornbeamGlobals::GetSharedFontActivationTracker(),
            HornbeamGlobals::GetSharedFontActivationTracker());
  HornbeamGlobals::CleanUpOnShutdown();
  EXPECT_EQ(1, library.CountCalls("CleanUpOnShutdown"));
  EXPECT_FALSE(HornbeamGlobals::ArePluginServicesEnabled());
  EXPECT_EQ("", HornbeamGlobals::GetPluginHostApp());
  EXPECT_EQ("", HornbeamGlobals::GetPluginVersion());
  EXPECT_EQ(nullptr, HornbeamGlobals::GetSharedLoomInterface()) << "a late tick must not build it anew";
  EXPECT_EQ(nullptr, HornbeamGlobals::GetSharedFontActivationTracker());
  EXPECT_EQ(nullptr, HornbeamGlobals::GetHostAppDisplayName());
  HornbeamGlobals::SaveDocumentFonts("/d/a.indd", nullptr);
}

}  // namespace
