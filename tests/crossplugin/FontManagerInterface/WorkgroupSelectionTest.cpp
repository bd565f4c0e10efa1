#include <gtest/gtest.h>

#include "Activation/State/HornbeamGlobals.h"
#include "FontManagerInterface/FontManagerInterface.h"
#include "support/FakeFontManager.h"
#include "support/FakeLoom.h"

namespace {

class WorkgroupSelectionTest : public testing::Test {
 protected:
  WorkgroupSelectionTest() {
    FakeFontManager::ResetSelection();
    loom.SetPreference("EnablePlugin", 1);
    HornbeamGlobals::SetPluginServicesEnabled(true);
    HornbeamGlobals::SetLoggedIn(true);
    HornbeamGlobals::SetUserHasWorkgroups(true);
  }
  ~WorkgroupSelectionTest() override {
    FakeFontManager::ResetSelection();
    HornbeamGlobals::SetPluginServicesEnabled(false);
    HornbeamGlobals::SetLoggedIn(false);
    HornbeamGlobals::SetUserHasWorkgroups(false);
  }

  void Select(int workgroupID) { loom.SetPreference("CurrentWorkgroup", workgroupID); }
  int Selected() const { return static_cast<int>(loom.GetPreference("CurrentWorkgroup")); }

  FakeFontManager manager;
  FakeLoom loom;
};

struct Selection {
  const char* name;
  std::vector<int> workgroups;
  bool mayUseAll;
  int before;
  int after;
  bool valid;
};

TEST_F(WorkgroupSelectionTest, DefaultIsWhatTheUserMayUse) {
  for (const Selection& row :
       {Selection{"kept", {3, 4}, false, 4, 4, true}, Selection{"all kept", {3, 4}, true, -2, -2, true},
        Selection{"lost, all allowed", {3, 4}, true, 9, -2, true},
        Selection{"lost, only one there", {3}, false, 9, 3, true},
        Selection{"lost, several there", {3, 4}, false, 9, 9, false},
        Selection{"none selected", {3, 4}, false, 0, 0, false},
        Selection{"all no longer allowed", {3}, false, -2, 3, true},
        Selection{"none there", {}, false, 3, 3, false}}) {
    manager.workgroups.clear();
    for (int workgroupID : row.workgroups)
      manager.AddWorkgroup(workgroupID, "W" + std::to_string(workgroupID));
    manager.mayUseAllWorkgroups = row.mayUseAll;
    Select(row.before);
    manager.InitializeDefaultWorkgroup();
    EXPECT_EQ(row.after, Selected()) << row.name;
    EXPECT_EQ(row.valid, FontManagerInterface::IsValidWorkgroupSelected()) << row.name;
  }
}

TEST_F(WorkgroupSelectionTest, AManagerThatDoesNotRunChangesNothing) {
  manager.running = false;
  manager.AddWorkgroup(3, "W");
  Select(9);
  manager.InitializeDefaultWorkgroup();
  EXPECT_EQ(9, Selected());
  EXPECT_TRUE(FontManagerInterface::IsValidWorkgroupSelected());
}

TEST_F(WorkgroupSelectionTest, LostSelectionIsReplacedByRule) {
  for (const Selection& row :
       {Selection{"still there", {3, 4}, false, 4, 4, true}, Selection{"lost", {3, 4}, false, 9, 3, true},
        Selection{"lost, all allowed", {3, 4}, true, 9, -2, true}, Selection{"none", {3}, true, 0, -2, true},
        Selection{"standalone without any", {}, false, 9, 0, false}}) {
    manager.workgroups.clear();
    for (int workgroupID : row.workgroups)
      manager.AddWorkgroup(workgroupID, "W" + std::to_string(workgroupID));
    manager.mayUseAllWorkgroups = row.mayUseAll;
    FontManagerInterface::SetValidWorkgroupSelected(false);
    Select(row.before);
    EXPECT_TRUE(FontManagerInterface::CheckSelectWorkgroup()) << row.name;
    EXPECT_EQ(row.after, Selected()) << row.name;
    EXPECT_EQ(row.valid, FontManagerInterface::IsValidWorkgroupSelected()) << row.name;
    EXPECT_FALSE(FontManagerInterface::IsSelectWorkgroupInProgress()) << row.name;
  }
  EXPECT_TRUE(loom.boxes.empty());
}

TEST_F(WorkgroupSelectionTest, ServerEditionWithoutWorkgroupsStopsTheServices) {
  manager.standalone = false;
  manager.HandleSelectWorkgroup();
  EXPECT_FALSE(HornbeamGlobals::UserHasWorkgroups());
  EXPECT_FALSE(FontManagerInterface::IsValidWorkgroupSelected());
  EXPECT_EQ((std::vector<std::string>{"NoWorkgroupsMessage"}), loom.Messages());
  EXPECT_FALSE(FontManagerInterface::CheckSelectWorkgroup());
  EXPECT_EQ(1u, loom.boxes.size()) << "told once";
}

TEST_F(WorkgroupSelectionTest, GuardAnswersByWhatIsThere) {
  EXPECT_TRUE(FontManagerInterface::CheckSelectWorkgroup()) << "a valid selection is enough";
  FontManagerInterface::SetValidWorkgroupSelected(false);
  manager.standalone = false;
  manager.loggedIn = false;
  manager.AddWorkgroup(3, "W");
  EXPECT_FALSE(FontManagerInterface::CheckSelectWorkgroup()) << "neither logged in nor standalone";
  EXPECT_EQ(0, Selected());
  manager.loggedIn = true;
  loom.SetPreference("EnablePlugin", 0);
  EXPECT_FALSE(FontManagerInterface::CheckSelectWorkgroup()) << "switched off by the user";
  loom.SetPreference("EnablePlugin", 1);
  FontManagerInterface::SetSelectWorkgroupInProgress(true);
  EXPECT_TRUE(FontManagerInterface::CheckSelectWorkgroup()) << "someone is at it";
  EXPECT_EQ(0, Selected());
}

TEST_F(WorkgroupSelectionTest, FailedQuestionCountsAsNoWorkgroups) {
  manager.AddWorkgroup(3, "W");
  manager.workgroupStatus = 0x0300100E;
  int workgroupID = 77;
  EXPECT_FALSE(manager.UserHasAtLeastOneWorkgroup());
  EXPECT_FALSE(manager.IsValidWorkgroupForUser(3));
  EXPECT_EQ(nullptr, manager.GetWorkgroupNameFromID(3));
  EXPECT_EQ(-1, manager.GetWorkgroupID(CFSTR("W"), &workgroupID));
  EXPECT_EQ(77, workgroupID);
}

TEST_F(WorkgroupSelectionTest, NamesFindWorkgroups) {
  manager.AddWorkgroup(3, "Twin");
  manager.AddWorkgroup(4, "Twin");
  int workgroupID = 0;
  EXPECT_EQ(0, manager.GetWorkgroupID(CFSTR("Twin"), &workgroupID));
  EXPECT_EQ(3, workgroupID);
  EXPECT_TRUE(manager.IsValidWorkgroupForUser(4)) << "by name";
  EXPECT_FALSE(manager.IsValidWorkgroupForUser(0));
  EXPECT_EQ(-1, manager.GetWorkgroupID(nullptr, &workgroupID));
  EXPECT_EQ(-1, manager.GetWorkgroupID(CFSTR("Twin"), nullptr));
  EXPECT_EQ(-1, manager.GetWorkgroupID(CFSTR("All Libraries"), &workgroupID));
  manager.mayUseAllWorkgroups = true;
  EXPECT_EQ(0, manager.SetDefaultWorkgroupName(CFSTR("All Libraries")));
  EXPECT_EQ(-2, Selected());
  manager.standalone = false;
  EXPECT_EQ(0, manager.GetWorkgroupID(CFSTR("All Workgroups"), &workgroupID));
  EXPECT_EQ(-2, workgroupID);
  Select(4);
  const auto name = adoptCF(manager.GetDefaultWorkgroupName());
  EXPECT_EQ("Twin", ToStdString(name.get()));
}

TEST_F(WorkgroupSelectionTest, FontsLearnTheNameOfTheirWorkgroup) {
  manager.AddWorkgroup(3, "Studio");
  const auto fonts = MakeFontList(
      {MakeFontRecord({{kGM_WorkgroupIDKey, "3"}}), MakeFontRecord({{kGM_WorkgroupIDKey, "5"}})});
  CFArrayAppendValue(fonts.get(), CFSTR("no record"));
  EXPECT_EQ(0, manager.AddWorkgroupNamesToFonts(fonts.get()));
  EXPECT_EQ("Studio", FontValue(FontRecord::At(fonts.get(), 0), kGM_WorkgroupNameKey));
  EXPECT_EQ("", FontValue(FontRecord::At(fonts.get(), 1), kGM_WorkgroupNameKey));
  EXPECT_EQ(0, manager.AddWorkgroupNamesToFonts(nullptr));
}

TEST_F(WorkgroupSelectionTest, AllWorkgroupsHasOneNameWhicheverSignItWasWrittenWith) {
  const auto all = MakeFontList(
      {MakeFontRecord({{kGM_WorkgroupIDKey, "4294967294"}, {kGM_WorkgroupNameKey, "All Libraries"}})});
  for (const long workgroupID : {-2L, 4294967294L}) {
    const RetainPtr<CFStringRef> name = adoptCF(manager.FindWorkgroupIDGetName(workgroupID, all.get()));
    EXPECT_EQ(ToStdString(name.get()), "All Libraries");
  }
}

}  // namespace
