#include "Activation/Vocabulary/FontRecordKeys.h"
#include "CoreAgentInterface/AgentTest.h"
#include "Memory/CFVector.h"

namespace {

class QueriesTest : public AgentTest {
 protected:
  std::vector<unsigned long> Find(const std::string& name, long workgroup) {
    std::vector<unsigned long> ids{99};
    status = agent->FontIDsForPostScriptName(name, workgroup, ids);
    return ids;
  }

  int status = 0;
};

TEST_F(QueriesTest, SystemFontsComeBehindThoseOfTheWorkgroup) {
  Connect();
  library.AddFont("A", 0, 9);
  library.AddFont("A", 0, 1);
  library.AddFont("A", 0, 2);
  EXPECT_EQ(Find("A", 1), (std::vector<unsigned long>{2, 1}));
  EXPECT_EQ(library.CountCalls("GetFontsByPostscriptName"), 2);
  EXPECT_EQ(library.LastCall("GetFontsByPostscriptName"),
            "GetFontsByPostscriptName('A', [9], 1, *, 1024, *)");
  EXPECT_EQ(status, 0);
}

TEST_F(QueriesTest, AllWorkgroupsAreOnePassOverZero) {
  Connect();
  library.AddFont("A", 0, 9);
  EXPECT_EQ(Find("A", -2), std::vector<unsigned long>{1});
  EXPECT_EQ(library.CountCalls("GetFontsByPostscriptName"), 1);
  EXPECT_EQ(library.LastCall("GetFontsByPostscriptName"),
            "GetFontsByPostscriptName('A', [0], 1, *, 1024, *)");
  EXPECT_EQ(Find("A", 4294967294), std::vector<unsigned long>{1}) << "All, written without a sign";
}

TEST_F(QueriesTest, TheLastPassDecidesTheStatus) {
  Connect();
  library.AddFont("A", 0, 9);
  library.nextResults["GetFontsByPostscriptName"] = {CoreErrorCodes::kError};
  EXPECT_EQ(Find("A", 1), std::vector<unsigned long>{1});
  EXPECT_EQ(status, 0);
  library.nextResults["GetFontsByPostscriptName"] = {0, CoreErrorCodes::kError};
  EXPECT_TRUE(Find("A", 1).empty());
  EXPECT_EQ(status, -1);
}

TEST_F(QueriesTest, MoreHitsThanRoomAreCut) {
  Connect();
  for (int i = 0; i < 1030; ++i) library.AddFont("A");
  EXPECT_EQ(Find("A", -2).size(), 1024u);
  std::vector<unsigned long> ids;
  EXPECT_EQ(agent->FontIDsForFamilyName("Family", -2, ids), 0);
  EXPECT_EQ(ids.size(), 1030u);
}

TEST_F(QueriesTest, WalkByIndexAsksAgainForEachFont) {
  Connect();
  library.AddFont("A", 4);
  long count = -1;
  std::string token;
  EXPECT_EQ(agent->CountNamedFonts("A", TypeOfFontName::kPostScriptName, -2, &count, token), 0);
  EXPECT_EQ(count, 1);
  FontOrSetInfoRec record;
  EXPECT_EQ(agent->GetNamedFontInfo("A", TypeOfFontName::kPostScriptName, -2, 1, token, &record), 0);
  const auto info = adoptCF(record.fontInfo);
  EXPECT_EQ(record.tag, FontOrSetInfoRec::kTagFont);
  EXPECT_EQ(record.databaseID, 1u);
  EXPECT_EQ(record.activationState, 2);
  EXPECT_EQ(FontValue(info.get(), kGM_IsActiveKey), "1");
  EXPECT_EQ(library.CountCalls("GetFontsByPostscriptName"), 2);

  for (const long index : {0L, 2L, -1L}) {
    EXPECT_EQ(agent->GetNamedFontInfo("A", TypeOfFontName::kPostScriptName, -2, index, token, &record), -1);
  }
  EXPECT_EQ(library.CountCalls("GetFontInfoByID"), 1);
  EXPECT_EQ(agent->CountNamedFonts("A", static_cast<TypeOfFontName>(7), -2, &count, token), -1);
  EXPECT_EQ(count, 0);
}

TEST_F(QueriesTest, FontInfoIsScopedByTheQueryUnlessAllAreSelected) {
  Connect();
  library.AddFont("A");
  CFStringRef name = nullptr;
  EXPECT_EQ(agent->GetPostscriptNameByID(name, 5, 1), 0);
  EXPECT_EQ(ToStdString(adoptCF(name).get()), "A");
  EXPECT_EQ(library.LastCall("GetFontInfoByID"), "GetFontInfoByID([1], 1, *, *, *)") << "the selected one";
  const auto query = MakeFontRecord({{kGM_DatabaseIDKey, "1"}, {kGM_WorkgroupIDKey, "5"}});
  FontOrSetInfoRec record;
  EXPECT_EQ(agent->GetFontInfoByID(query.get(), &record), 0);
  CFRelease(record.fontInfo);
  EXPECT_EQ(library.LastCall("GetFontInfoByID"), "GetFontInfoByID([5], 1, *, *, *)");
  loom.SetPreference("CurrentWorkgroup", -2);
  EXPECT_EQ(agent->GetFontInfoByID(query.get(), &record), 0);
  CFRelease(record.fontInfo);
  EXPECT_EQ(library.LastCall("GetFontInfoByID"), "GetFontInfoByID([0], 1, *, *, *)");
}

TEST_F(QueriesTest, FontInfoThatIsNotThereLeavesTheRecordEmpty) {
  Connect();
  FontOrSetInfoRec record;
  record.tag = 7;
  EXPECT_EQ(agent->GetFontInfoByID(MakeMatchedFont("A", 77).get(), &record), 0);
  EXPECT_EQ(record.tag, FontOrSetInfoRec::kTagEmpty);
  EXPECT_EQ(record.fontInfo, nullptr);
  library.results["GetFontInfoByID"] = CoreErrorCodes::kNotFound;
  EXPECT_EQ(agent->GetFontInfoByID(MakeMatchedFont("A", 77).get(), &record),
            static_cast<int>(CoreErrorCodes::kNotFound));
}

TEST_F(QueriesTest, StatesAreToldByID) {
  Connect();
  library.AddFont("A", 1);
  library.AddFont("B", 4);
  library.conflicts = {{1, 2}};
  using States = std::map<unsigned int, bool>;
  EXPECT_EQ(agent->GetClientFontActivationStates({1, 2, 0, 1}), (States{{0, false}, {1, true}, {2, false}}));
  const auto fonts =
      MakeFontList({MakeMatchedFont("A", 1), MakeMatchedFont("?", 0), MakeMatchedFont("B", 2)});
  EXPECT_EQ(agent->GetFontIsActivated(fonts.get()), (States{{1, true}, {2, true}}));
  EXPECT_TRUE(agent->GetFontIsActivated(nullptr).empty());
  EXPECT_EQ(agent->GetFontConflicts({1, 0, 2}), (std::map<unsigned int, unsigned int>{{1, 2}, {2, 0}}));

  for (const char* entry : {"GetClientFontActivationStates", "GetFontIsActivated", "GetFontConflicts"}) {
    library.results[entry] = GIPCClient::kServiceUnavailable;
  }
  EXPECT_EQ(agent->GetClientFontActivationStates({1}), (States{{1, false}}));
  EXPECT_TRUE(agent->GetFontIsActivated(fonts.get()).empty());
  EXPECT_TRUE(agent->GetFontConflicts({1}).empty());
}

TEST_F(QueriesTest, TheSlugIsMadeOfTheRecordAndMustFit) {
  Connect();
  const auto record = MakeFontRecord({{kGM_PostScriptNameKey, "A"}});
  char buffer[1024] = "";
  unsigned long size = sizeof(buffer);
  EXPECT_EQ(agent->GetGlyphMarkInfo(1, record.get(), buffer, &size), 0);
  EXPECT_NE(std::string(buffer).find("<string>A</string>"), std::string::npos) << buffer;
  size = 20;
  EXPECT_EQ(agent->GetGlyphMarkInfo(1, record.get(), buffer, &size), -1);
  EXPECT_EQ(agent->GetGlyphMarkInfo(1, nullptr, buffer, &size), -1);
  EXPECT_EQ(agent->EndGetGlyphMarkInfo(""), static_cast<int>(CoreErrorCodes::kNotImplemented));
  EXPECT_TRUE(library.calls.empty());
}

TEST_F(QueriesTest, OfAFamilyWhatTheDocumentHasAlreadyIsLeftOut) {
  const auto member = [](const char* name, const char* id) {
    return MakeFontRecord({{kGM_PostScriptNameKey, name},
                           {kGM_DatabaseIDKey, id},
                           {kGM_ActivationStateKey, "4"},
                           {kGM_AssignedFamilyGroupIDKey, "3"}});
  };
  Connect();
  const auto font = member("Sans-Bold", "2");
  const auto matched = MakeFontList({member("Sans-Bold", "2"), member("Sans-Italic", "9")});
  const auto family = MakeFontList({member("Sans", "1"), font, member("Sans-Italic", "3")});
  EXPECT_EQ(agent->FindFontsInSameFamilyForActivation(font.get(), matched.get(), 1, family.get()), 0);
  EXPECT_EQ(library.LastCall("FindFontsInSameFamilyForActivation"),
            "FindFontsInSameFamilyForActivation(*, [1], 1, *)");
  EXPECT_EQ(FontNamesOf(family.get()), (std::vector<std::string>{"Sans", "Sans-Bold"}));
  for (CFIndex i = 0; i < 2; ++i) {
    EXPECT_EQ(FontValue(FontRecord::At(family.get(), i), kGM_ActivationStateKey), "2");
  }
  EXPECT_EQ(agent->FindFontsInSameFamilyForActivation(nullptr, nullptr, 1, family.get()), -1);
  EXPECT_EQ(agent->FindFontsInSameFamilyForActivation(font.get(), nullptr, 1, nullptr), -1);
  EXPECT_EQ(
      agent->FindFontsInSameFamilyForActivation(MakeMatchedFont("A", 1).get(), nullptr, 1, family.get()), -1);
}

TEST(ActivationStates, AgentsStatesBecomeThePlugins) {
  const struct {
    int agentState;
    const char *state, *isTemporary, *isActive, *isAutoActivated;
  } kCases[] = {
      {0, "1", "0", "0", "0"},  {1, "3", "1", "1", "1"},  {2, "3", "1", "1", "1"},  {3, "3", "1", "1", "0"},
      {4, "2", "0", "1", "0"},  {5, "2", "0", "1", "0"},  {6, "2", "0", "1", "0"},  {7, "0", "0", "0", "0"},
      {8, "0", "0", "0", "0"},  {9, "3", "1", "1", "0"},  {10, "3", "1", "1", "0"}, {11, "2", "0", "1", "0"},
      {12, "0", "0", "0", "0"}, {-1, "0", "0", "0", "0"},
  };
  for (const auto& row : kCases) {
    SCOPED_TRACE(row.agentState);
    const auto record = MakeFontRecord({{kGM_ActivationStateKey, std::to_string(row.agentState)}});
    EXPECT_EQ(CoreAgentInterface::ConvertActivationStateValues(record.get()), 0);
    EXPECT_EQ(FontValue(record.get(), kGM_ActivationStateKey), row.state);
    EXPECT_EQ(FontValue(record.get(), kGM_IsTempKey), row.isTemporary);
    EXPECT_EQ(FontValue(record.get(), kGM_IsActiveKey), row.isActive);
    EXPECT_EQ(FontValue(record.get(), kGM_IsAutoActivatedKey), row.isAutoActivated);
  }
  EXPECT_EQ(CoreAgentInterface::ConvertActivationStateValues(nullptr), -1);
}

}  // namespace
