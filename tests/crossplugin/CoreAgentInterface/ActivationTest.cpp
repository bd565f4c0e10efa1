#include "Activation/Vocabulary/FontRecordKeys.h"
#include "CoreAgentInterface/AgentTest.h"
#include "Memory/CFVector.h"

namespace {

class ActivationTest : public AgentTest {
 protected:
  RetainPtr<CFMutableArrayRef> Fonts(const std::vector<unsigned int>& ids) {
    auto list = MakeArray();
    for (const unsigned int id : ids) CFArrayAppendValue(list.get(), MakeMatchedFont("F", id).get());
    return list;
  }

  void SetMode(bool locally, bool globally) {
    loom.SetPreference("ActivateLocally", locally);
    loom.SetPreference("ActivateGlobally", globally);
  }
};

TEST_F(ActivationTest, ModeDecidesWhichCallsAreMade) {
  const std::string global = "ActivateFonts(2, [7 9], 0, 1, 1, 1, 2, 2, *, *, *, *)";
  const std::string local = "PreviewActivateFonts(2, [7 9], 0)";
  const struct {
    bool locally, globally;
    std::vector<std::string> calls;
  } kCases[] = {{false, false, {global}},
                {false, true, {global}},
                {true, false, {local}},
                {true, true, {global, local}}};
  Connect();
  const auto fonts = Fonts({7, 9});
  for (const auto& row : kCases) {
    SetMode(row.locally, row.globally);
    library.calls.clear();
    EXPECT_EQ(agent->ActivateFontsByID(fonts.get(), "doc", nullptr, nullptr, nullptr), 0);
    EXPECT_EQ(library.calls, row.calls);
  }
}

TEST_F(ActivationTest, OneFontGoesOutWithRoomForOne) {
  Connect();
  EXPECT_EQ(agent->ActivateFontByID(MakeMatchedFont("F", 4294967295u).get(), "doc", nullptr), 0);
  EXPECT_EQ(library.calls,
            std::vector<std::string>{"ActivateFonts(1, [4294967295], 0, 1, 1, 1, 1, 1, *, *, *, *)"});
  library.results["ActivateFonts"] = GOspreyAssetManager::kFontMissing;
  EXPECT_EQ(agent->ActivateFontByID(MakeMatchedFont("F", 7).get(), "doc", nullptr), -1);
}

TEST_F(ActivationTest, OfBothCallsTheSecondDecides) {
  Connect();
  SetMode(true, true);
  const auto fonts = Fonts({7});
  library.results["ActivateFonts"] = CoreErrorCodes::kError;
  EXPECT_EQ(agent->ActivateFontsByID(fonts.get(), "doc", nullptr, nullptr, nullptr), 0);
  library.results = {{"PreviewActivateFonts", CoreErrorCodes::kError}};
  EXPECT_EQ(agent->ActivateFontsByID(fonts.get(), "doc", nullptr, nullptr, nullptr), -1);
}

TEST_F(ActivationTest, EachFontIsActivatedFailedOrRefused) {
  using IDs = std::vector<unsigned int>;
  const struct {
    const char* name;
    IDs asked, failed, refused;
    int result;
    IDs toldActivated, toldRefused;
  } kCases[] = {
      {"a failed one is left out", {7, 9, 0, 8}, {9}, {}, 0, {7, 8}, {}},
      {"refused ones come in their order", {7, 9, 8}, {}, {8, 7}, -1, {}, {7, 8}},
      {"more failed than asked are cut", {7, 9}, {9, 1, 2, 3, 4, 5, 6}, {}, 0, {7}, {}},
  };
  for (const auto& row : kCases) {
    SCOPED_TRACE(row.name);
    Connect();
    library.failedIDs = row.failed;
    library.refusedIDs = row.refused;
    const auto activated = MakeArray();
    const auto refused = MakeArray();
    EXPECT_EQ(
        agent->ActivateFontsByID(Fonts(row.asked).get(), "doc", nullptr, activated.get(), refused.get()),
        row.result);
    EXPECT_EQ(FontIDsOf(activated.get()), row.toldActivated);
    EXPECT_EQ(FontIDsOf(refused.get()), row.toldRefused);
  }
}

TEST_F(ActivationTest, EmptyListsAskNothing) {
  Connect();
  EXPECT_EQ(agent->ActivateFontsByID(nullptr, "doc", nullptr, nullptr, nullptr), 0);
  EXPECT_EQ(agent->ActivateFontsByID(Fonts({}).get(), "doc", nullptr, nullptr, nullptr), 0);
  EXPECT_EQ(agent->DeactivateFonts(nullptr, nullptr, nullptr), 0);
  EXPECT_EQ(agent->DeactivateFonts(Fonts({}).get(), nullptr, nullptr), 0);
  EXPECT_TRUE(library.calls.empty());
}

TEST_F(ActivationTest, DeactivatedFontsAreTheOnesWithAnID) {
  Connect();
  const auto deactivated = MakeArray();
  EXPECT_EQ(agent->DeactivateFonts(Fonts({7, 0, 9}).get(), nullptr, deactivated.get()), 0);
  EXPECT_EQ(FontIDsOf(deactivated.get()), (std::vector<unsigned int>{7, 9}));
  EXPECT_EQ(agent->DeactivateFont(MakeMatchedFont("F", 5).get(), nullptr), 0);
  EXPECT_EQ(library.calls,
            (std::vector<std::string>{"DeactivateFonts(2, [7 9], 0)", "DeactivateFonts(1, [5], 0)"}));
  library.results["DeactivateFonts"] = GFontActivation::kOSDeactivationError;
  CFArrayRemoveAllValues(deactivated.get());
  EXPECT_EQ(agent->DeactivateFonts(Fonts({7}).get(), nullptr, deactivated.get()), -1);
  EXPECT_EQ(CFArrayGetCount(deactivated.get()), 0);
}

TEST_F(ActivationTest, DocumentFontsGoOutWithTheUsersSettings) {
  Connect();
  library.AddFont("Known");
  const auto fonts = MakeFontList({MakeFontRecord({{kGM_PostScriptNameKey, "Known"}}),
                                   MakeFontRecord({{kGM_PostScriptNameKey, "Strange"}})});
  const auto matched = MakeArray();
  const auto problems = MakeArray();
  loom.SetPreference("PickBestMatch", 1);
  loom.SetPreference("CurrentWorkgroup", -2);
  EXPECT_EQ(agent->ActivateDocumentFontsByPath("/a.indd", fonts.get(), matched.get(), problems.get()), 0);
  EXPECT_EQ(library.calls.back(), "ActivateDocumentFontsByPath('/a.indd', *, 0, 0, 1, 0, 0, *, *)");
  EXPECT_EQ(FontNamesOf(matched.get()), std::vector<std::string>{"Known"});
  EXPECT_EQ(FontNamesOf(problems.get()), std::vector<std::string>{"Strange"});

  loom.SetPreference("ActivateEntireFamilies", 1);
  loom.SetPreference("EnableGlyphMark", 1);
  loom.SetPreference("PickBestMatch", 0);
  loom.SetPreference("CurrentWorkgroup", 1);
  library.results["ActivateDocumentFontsByPath"] = CoreErrorCodes::kNotFound;
  EXPECT_EQ(agent->ActivateDocumentFontsByPath("/a.indd", fonts.get(), matched.get(), problems.get()),
            static_cast<int>(CoreErrorCodes::kNotFound));
  EXPECT_EQ(library.calls.back(), "ActivateDocumentFontsByPath('/a.indd', *, 0, 1, 0, 1, 1, *, *)");
}

TEST_F(ActivationTest, FontsOfADisabledRemoteLibraryAreRemoved) {
  Connect();
  const auto number = adoptCF(CFNumberCreate(nullptr, kCFNumberIntType, std::vector<int>{8}.data()));
  const auto withNumber = MakeFontRecord({{kGM_PostScriptNameKey, "C"}});
  CFDictionarySetValue(withNumber.get(), kGM_WorkgroupTypeKey, number.get());
  const auto fonts =
      MakeFontList({MakeFontRecord({{kGM_PostScriptNameKey, "A"}, {kGM_WorkgroupTypeKey, "8"}}),
                    MakeFontRecord({{kGM_PostScriptNameKey, "B"}, {kGM_WorkgroupTypeKey, "3"}}), withNumber});
  library.googleFontsEnabled = 1;
  EXPECT_EQ(agent->RemoveRemoteFonts(fonts.get()), 0);
  EXPECT_EQ(CFArrayGetCount(fonts.get()), 3);
  library.googleFontsEnabled = 0;
  EXPECT_EQ(agent->RemoveRemoteFonts(fonts.get()), 0);
  EXPECT_EQ(FontNamesOf(fonts.get()), std::vector<std::string>{"B"});
  EXPECT_EQ(agent->RemoveRemoteFonts(nullptr), -1);
}

// ---- Sets.

TEST_F(ActivationTest, ASetIsMadeOfTheFontsThatAreNotTheSystems) {
  Connect();
  const auto fonts = MakeFontList(
      {MakeMatchedFont("A", 7),
       MakeFontRecord({{kGM_PostScriptNameKey, "B"}, {kGM_DatabaseIDKey, "8"}, {kGM_IsSystemKey, "1"}})});
  EXPECT_EQ(agent->MakeSetForDocumentFonts(CFSTR("Flyer"), fonts.get()), 0);
  EXPECT_EQ(library.calls.back(), "CreateTopLevelSet(*, 'Flyer', 1, 0, 0, 1, [7])");
  EXPECT_EQ(loom.questions,
            std::vector<std::string>{
                "Create a [FONT_MANAGER_MODIFIER] set for this document's fonts?|Set Name:|Flyer"});
}

TEST_F(ActivationTest, NoSetWithoutOneWorkgroupOrAnAnswer) {
  Connect();
  const auto fonts = Fonts({7});
  EXPECT_EQ(agent->MakeSetForDocumentFonts(nullptr, fonts.get()), -1);
  loom.cancelsText = true;
  EXPECT_EQ(agent->MakeSetForDocumentFonts(CFSTR("Flyer"), fonts.get()), 0);
  loom.cancelsText = false;
  loom.SetPreference("CurrentWorkgroup", -2);
  EXPECT_EQ(agent->MakeSetForDocumentFonts(CFSTR("Flyer"), fonts.get()), -1);
  EXPECT_EQ(library.CountCalls("CreateTopLevelSet"), 0);
}

// ---- Collecting a document's fonts.

class CollectTest : public ActivationTest {
 protected:
  CollectTest() { Connect(); }

  int Collect(const std::vector<unsigned int>& ids) {
    library.calls.clear();
    terminal.written.clear();
    return agent->CollectFontsUsedByCurrentDocument("Flyer", "/d/Flyer.idml", Fonts(ids).get());
  }

  FakeTerminal terminal;
  ScopedReplacement<platform::Terminal> replacedTerminal{terminal};
  ScopedEnvironment prompt{"LOOM_TERMINAL_PROMPT", std::nullopt};
};

TEST_F(CollectTest, FontsGoToTheFolderThatTheUserNames) {
  loom.sentences["[FONT_MANAGER_MODIFIER] Auto-Activation Plug-in for [host app]"] = "Collect";
  terminal.answers = {" " + home.Path("out") + " "};
  EXPECT_EQ(Collect({7, 0, 9}), 0);
  EXPECT_EQ(library.calls,
            std::vector<std::string>{"ExportFonts(2, [7 9], '" + home.Path("out") + "', 0, 0)"});
  EXPECT_EQ(terminal.written,
            "\nCollect\nEnter name of new folder.  Collected fonts will be placed here.\n[Flyer's fonts] ");
  terminal.answers = {"x"};
  library.results["ExportFonts"] = GOspreyExportFonts::kCannotWriteToDestinationFolder;
  EXPECT_EQ(Collect({7}), -1);
}

TEST_F(CollectTest, WithoutFontsTheFolderIsMadeUnlessItIsThere) {
  const struct {
    unsigned int isThere, isMade;
    int result;
    long made;
  } kCases[] = {{0, 0, 0, 0}, {1, 0, 0, 1}, {1, 1, -1, 1}};
  for (const auto& row : kCases) {
    terminal.answers = {"/out"};
    library.results["OSDoesDirectoryExist"] = row.isThere;
    library.results["OSCreateDirectory"] = row.isMade;
    EXPECT_EQ(Collect({}), row.result);
    EXPECT_EQ(library.calls.front(), "OSDoesDirectoryExist('/out')");
    EXPECT_EQ(library.CountCalls("OSCreateDirectory"), row.made);
  }
}

TEST_F(CollectTest, AUserWhoCancelsOrCannotBeAskedCollectsNothing) {
  EXPECT_EQ(Collect({7}), 0);
  terminal.answers = {"/out"};
  terminal.canAsk = false;
  EXPECT_EQ(Collect({7}), 0);
  EXPECT_EQ(terminal.written, "");
  EXPECT_TRUE(library.calls.empty());
}

TEST_F(ActivationTest, ALongSetNameIsCutBetweenCharacters) {
  const std::string musicalNote = "\xF0\x9D\x84\x9E";  // two UTF-16 units
  const struct {
    std::string name, used;
    bool told;
  } kCases[] = {
      {std::string(255, 'x'), std::string(255, 'x'), false},
      {std::string(300, 'x'), std::string(255, 'x'), true},
      {std::string(254, 'x') + musicalNote, std::string(254, 'x'), true},
      {std::string(253, 'x') + musicalNote + "y", std::string(253, 'x') + musicalNote, true},
  };
  Connect();
  for (const auto& row : kCases) {
    loom.boxes.clear();
    EXPECT_EQ(agent->MakeSetForDocumentFonts(ToCFString(row.name).get(), Fonts({7}).get()), 0);
    EXPECT_EQ(library.calls.back(), "CreateTopLevelSet(*, '" + row.used + "', 1, 0, 0, 1, [7])");
    EXPECT_EQ(loom.boxes.size(), row.told ? 1u : 0u);
  }
}

}  // namespace
