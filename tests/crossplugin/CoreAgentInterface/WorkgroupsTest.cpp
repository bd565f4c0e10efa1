#include "Activation/Vocabulary/FontRecordKeys.h"
#include "Activation/Vocabulary/WorkgroupRecord.h"
#include "CoreAgentInterface/AgentTest.h"
#include "Memory/CFVector.h"

namespace {

class WorkgroupsTest : public AgentTest {
 protected:
  std::vector<std::string> Names(bool includeAll) {
    CFArrayRef workgroups = nullptr;
    EXPECT_EQ(agent->GetAllWorkgroupsForUser(&workgroups, includeAll, true, false), 0);
    const auto owned = adoptCF(workgroups);
    std::vector<std::string> names;
    for (CFIndex i = 0; i < FontRecord::Count(workgroups); ++i) {
      CFDictionaryRef record = FontRecord::At(workgroups, i);
      names.push_back(std::to_string(GetWorkgroupRecordID(record)) + " " +
                      std::to_string(GetWorkgroupType(record)) + " " +
                      FontValue(record, kGM_WorkgroupNameKey));
    }
    return names;
  }
};

TEST_F(WorkgroupsTest, NamesFollowTypeAndEdition) {
  const struct {
    unsigned int type;
    int standalone;
    const char *agentName, *name;
  } kCases[] = {
      {0, 1, "x", "AllServerFontsWorkgroup"},
      {1, 1, "x", ""},
      {2, 1, "x", "ServerBasedPersonalWorkgroup"},
      {3, 1, "x", ""},
      {3, 1, "Font Library (LOCALIZE ME)", "Font Library (LOCALIZE ME)"},
      {3, 0, "x", "LocalPersonalWorkgroup"},
      {4, 0, "x", "System Fonts (LOCALIZE ME)"},
      {7, 0, "x", ""},
      {8, 0, "x", "GoogleFontsLibrary"},
      {9, 0, "x", ""},
      {10, 1, "Font Library (LOCALIZE ME)", "Font Library (LOCALIZE ME)"},
      {10, 0, "Font Library (LOCALIZE ME)", ""},
      {11, 0, "x", ""},
      {12, 0, "x", "Temporary Fonts (LOCALIZE ME)"},
      {13, 0, "x", ""},
  };
  Connect();
  for (const auto& row : kCases) {
    SCOPED_TRACE(row.type);
    library.standalone = row.standalone;
    const auto name = adoptCF(agent->CreateLocalizedWorkgroupName(row.type, row.agentName));
    EXPECT_EQ(ToStdString(name.get()), row.name);
  }
}

TEST_F(WorkgroupsTest, RecordsAreNamedAndTheAgentsStayUntouched) {
  loom.sentences = {{"System Fonts (LOCALIZE ME)", "System"}, {"All Libraries", "Everything"}};
  Connect();
  EXPECT_EQ(Names(true), (std::vector<std::string>{"1 3 Mine", "9 4 System"}));
  library.permissions = {"CanActivateAcrossWorkgroups"};
  EXPECT_EQ(Names(true), (std::vector<std::string>{"1 3 Mine", "9 4 System", "-2 0 Everything"}));
  EXPECT_EQ(Names(false).size(), 2u);
  EXPECT_EQ(FontValue(library.workgroups[1].get(), kGM_WorkgroupTypeKey), "4");
  library.workgroups.clear();
  EXPECT_TRUE(Names(true).empty()) << "nothing that \"all\" could stand for";
}

TEST_F(WorkgroupsTest, AFailureGivesItsCodeAndNoArray) {
  Connect();
  library.results["GetAllWorkgroupsForUser"] = CoreErrorCodes::kError;
  CFArrayRef workgroups = nullptr;
  EXPECT_EQ(agent->GetAllWorkgroupsForUser(&workgroups, true, true, true),
            static_cast<int>(CoreErrorCodes::kError));
  EXPECT_EQ(workgroups, nullptr);
  EXPECT_EQ(agent->GetAllWorkgroupsForUser(nullptr, true, true, true), -1);
  EXPECT_FALSE(agent->CheckForWorkgroups());
}

TEST_F(WorkgroupsTest, ScopeOfALookup) {
  Connect();
  const auto scope = [this](int workgroup) {
    std::vector<unsigned int> ids;
    agent->PopulateWorkgroupArray(workgroup, ids);
    return ids;
  };
  EXPECT_EQ(scope(-2), std::vector<unsigned int>{0});
  EXPECT_EQ(scope(7), std::vector<unsigned int>{7});
  library.googleFontsEnabled = 1;
  EXPECT_EQ(scope(7), (std::vector<unsigned int>{7, 0xFFFFFFFF}));
  library.AddWorkgroup(12, "Google", 8);
  EXPECT_EQ(scope(7), (std::vector<unsigned int>{7, 12})) << "asked again while it wasn't known";
  library.calls.clear();
  EXPECT_EQ(scope(7), (std::vector<unsigned int>{7, 12}));
  EXPECT_EQ(library.CountCalls("GetAllWorkgroupsForUser"), 0) << "remembered once it is known";
}

TEST_F(WorkgroupsTest, TheSelectedWorkgroupIsLocalByItsType) {
  Connect();
  EXPECT_TRUE(agent->IsSelectedWorkgroupLocal());
  library.standalone = 0;  // the record now has a name of ours, and its type as a number
  EXPECT_TRUE(agent->IsSelectedWorkgroupLocal());
  library.AddWorkgroup(2, "Theirs", 5);
  loom.SetPreference("CurrentWorkgroup", 2);
  EXPECT_FALSE(agent->IsSelectedWorkgroupLocal());
  loom.SetPreference("CurrentWorkgroup", 77);
  EXPECT_FALSE(agent->IsSelectedWorkgroupLocal());
}

TEST_F(WorkgroupsTest, PermissionsAreAskedByColumn) {
  Connect();
  EXPECT_FALSE(agent->CanActivateFromAllWorkgroups());
  EXPECT_EQ(library.calls.back(), "GetPermission(1, 'CanActivateAcrossWorkgroups', 0, *)");
  EXPECT_FALSE(agent->GetPermission(false, "X", -2));
  EXPECT_EQ(library.calls.back(), "GetPermission(0, 'X', 0, *)");

  const auto fonts = MakeFontList({MakeMatchedFont("A", 7)});
  EXPECT_FALSE(agent->CanExportFromWorkgroup(fonts.get()));
  EXPECT_EQ(library.calls.back(), "GetPermission(0, 'ExportFonts', 1, *)");
  library.permissions = {"ExportFonts"};
  EXPECT_TRUE(agent->CanExportFromWorkgroup(fonts.get()));

  loom.SetPreference("CurrentWorkgroup", -2);
  EXPECT_TRUE(agent->CanExportFromWorkgroup(nullptr));
  EXPECT_TRUE(agent->CanExportFromWorkgroup(fonts.get()));
  EXPECT_EQ(library.calls.back(), "CanExportFonts(1, [7], *)");
  library.mayExport = 0;
  EXPECT_FALSE(agent->CanExportFromWorkgroup(fonts.get()));
  library.results["CanExportFonts"] = CoreErrorCodes::kError;
  EXPECT_FALSE(agent->CanExportFromWorkgroup(fonts.get()));
}

}  // namespace
