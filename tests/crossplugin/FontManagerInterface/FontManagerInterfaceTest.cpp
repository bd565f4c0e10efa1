#include <gtest/gtest.h>

#include "FontManagerInterface/FontManagerInterface.h"
#include "support/FakeFontManager.h"

namespace {

// Nothing but what the facade leaves open.
class BareManager : public FontManagerInterface {
 public:
  std::map<unsigned int, bool> GetFontIsActivated(CFArrayRef) override { return {}; }
  int ActivateDocumentFontsByPath(const char*, CFArrayRef, CFMutableArrayRef, CFMutableArrayRef) override {
    return 0;
  }
  int ActivateFontByID(CFDictionaryRef, const std::string&, void**) override { return 0; }
  int ActivateFontsByID(CFArrayRef, const std::string&, void**, CFMutableArrayRef,
                        CFMutableArrayRef) override {
    return 0;
  }
  int DeactivateFont(CFDictionaryRef, void*) override { return 0; }
  int DeactivateFonts(CFArrayRef, void*, CFMutableArrayRef) override { return 0; }
  int GetAllWorkgroupsForUser(CFArrayRef*, bool, bool, bool) override { return 0; }
  int RemoveRemoteFonts(CFMutableArrayRef) override { return 0; }
};

TEST(FontManagerInterfaceTest, NeutralAnswers) {
  BareManager manager;
  EXPECT_FALSE(manager.ConnectedToCoreAgent());
  EXPECT_TRUE(manager.RunningStandalone());
  EXPECT_TRUE(manager.IsFontManagerConnected());
  EXPECT_TRUE(manager.IsLoggedIn());
  EXPECT_TRUE(manager.IsOnline());
  EXPECT_FALSE(manager.IsRunning());
  EXPECT_EQ(-1, manager.GoOffline());
  EXPECT_EQ(0, manager.EndGetGlyphMarkInfo(""));
  for (int workgroupID : {-3, -2, -1, 0, 1})
    EXPECT_EQ(workgroupID == -2, manager.IsAllWorkgroups(workgroupID));
}

TEST(FontManagerInterfaceTest, WithoutAnAgentNoFontIsFoundAndEveryFontCountsAsOurs) {
  BareManager manager;
  long count = 5;
  std::string token;
  EXPECT_EQ(-1, manager.CountNamedFonts("Foo", TypeOfFontName::kPostScriptName, 0, &count, token));
  EXPECT_EQ(0, count);
  const std::map<unsigned int, bool> expected = {{3, true}, {9, true}};
  EXPECT_EQ(expected, manager.GetClientFontActivationStates({3, 0, 9}));
}

TEST(FontManagerInterfaceTest, TheLiveManagerIsTheOneThatIsConnected) {
  EXPECT_EQ(nullptr, FontManagerInterface::GetFontManager());
  FakeFontManager manager;
  EXPECT_EQ(&manager, FontManagerInterface::GetConnectedFontManager());
  manager.connected = false;
  EXPECT_EQ(nullptr, FontManagerInterface::GetConnectedFontManager());
  EXPECT_EQ(&manager, FontManagerInterface::GetFontManager());
}

}  // namespace
