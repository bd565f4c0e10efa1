#include <gtest/gtest.h>

#include <stdexcept>

#include "Activation/FontActivationTracker.h"
#include "GErrorCodes.h"
#include "support/FakeFontManager.h"

namespace {

using IDs = std::vector<unsigned int>;

class FontActivationTrackerTest : public testing::Test {
 protected:
  void Register(unsigned int fontID, const std::string& identifier, bool alreadyActive = false) {
    const auto record = MakeMatchedFont("Font" + std::to_string(fontID), fontID);
    tracker.RegisterFontWithDocument(record.get(), FontRecord::GetPostScriptName(record.get()), fontID,
                                     alreadyActive, identifier, nullptr);
  }

  // The fonts that closing gives back.
  IDs Close(const std::string& identifier, bool deactivate = true, int expected = 0) {
    const auto deactivated = MakeArray();
    EXPECT_EQ(expected, tracker.CloseAllFontsForIdentifier(identifier, deactivate, deactivated.get()));
    return FontIDsOf(deactivated.get());
  }

  int Activate(const std::string& identifier, const RetainPtr<CFMutableArrayRef>& fonts) {
    matched = MakeArray();
    problems = MakeArray();
    CFMutableArrayRef outMatched = matched.get();
    CFMutableArrayRef outProblems = problems.get();
    return tracker.ActivateDocumentFonts(identifier, "/tmp/a.indd", outMatched, outProblems, fonts.get());
  }

  FakeFontManager manager;
  FontActivationTracker tracker{nullptr};
  RetainPtr<CFMutableArrayRef> matched;
  RetainPtr<CFMutableArrayRef> problems;
};

TEST_F(FontActivationTrackerTest, AFontIsGivenBackByRule) {
  struct Registration {
    unsigned int fontID;
    const char* document;
    bool alreadyActive = false;
  };
  const struct {
    const char* name;
    std::vector<Registration> registrations;
    std::map<unsigned int, bool> clientStates;
    std::vector<std::pair<const char*, IDs>> closes;  // document, what is given back
  } kCases[] = {
      {"with the last document", {{1, "a"}, {1, "b"}}, {}, {{"a", {}}, {"b", {1}}}},
      {"not when it was active before", {{1, "a", true}, {2, "a"}}, {}, {{"a", {2}}}},
      {"as its first registration says", {{1, "a"}, {1, "b", true}}, {}, {{"b", {}}, {"a", {1}}}},
      {"not when the user has taken it over", {{1, "a"}, {2, "a"}}, {{1, false}, {2, true}}, {{"a", {2}}}},
      {"once, also when registered twice", {{1, "a"}, {1, "a"}}, {}, {{"a", {1}}}},
      {"in the order of registration", {{9, "a"}, {2, "a"}, {5, "a"}}, {}, {{"a", {9, 2, 5}}}},
  };
  for (const auto& row : kCases) {
    SCOPED_TRACE(row.name);
    manager.clientStates = row.clientStates;
    manager.deactivateCalls.clear();
    for (const Registration& r : row.registrations) Register(r.fontID, r.document, r.alreadyActive);
    for (const auto& [document, expected] : row.closes) EXPECT_EQ(expected, Close(document)) << document;
    EXPECT_EQ(0, tracker.CloseAllFonts(true));
    EXPECT_EQ(row.closes.size(), manager.deactivateCalls.size()) << "a font was left behind";
  }
}

TEST_F(FontActivationTrackerTest, TheAgentIsToldEvenWhenNothingGoes) {
  Register(1, "a", true);
  Close("a");
  EXPECT_EQ((std::vector<IDs>{{}}), manager.deactivateCalls);
  EXPECT_EQ(IDs{}, Close("nobody")) << "an unknown document is no failure";
  EXPECT_EQ(1u, manager.deactivateCalls.size());
}

TEST_F(FontActivationTrackerTest, ClosingWithoutDeactivationLeavesTheFontForTheQuit) {
  Register(1, "a");
  Register(1, "a");
  Register(2, "a", true);
  EXPECT_EQ(2u, tracker.CountFontsOpenedForIdentifier("a")) << "the plug-in's own, with their repeats";
  EXPECT_EQ(IDs{}, Close("a", false));
  EXPECT_EQ(0u, tracker.CountFontsOpenedForIdentifier("a"));
  EXPECT_EQ(0, tracker.CloseAllFonts(true));
  EXPECT_EQ((IDs{1}), manager.deactivateCalls.back());
}

TEST_F(FontActivationTrackerTest, IdleFontOpensAgainWithItsFirstState) {
  Register(1, "a");
  Close("a", false);
  Register(1, "b", true);
  EXPECT_EQ((IDs{1}), Close("b"));
}

TEST_F(FontActivationTrackerTest, CodeOfTheDeactivationIsTheResultAndTheDocumentIsForgotten) {
  manager.deactivateStatus = -1;
  Register(1, "a");
  EXPECT_EQ(IDs{}, Close("a", true, -1));
  EXPECT_EQ(IDs{}, Close("a", true, 0));
}

TEST_F(FontActivationTrackerTest, QuitGivesBackEveryOpenFontWhateverItsCount) {
  manager.clientStates = {{3, false}};
  Register(2, "a");
  Register(1, "a");
  Register(1, "b");
  Register(3, "b");
  Register(4, "b", true);
  EXPECT_EQ(0, tracker.CloseAllFonts(true));
  EXPECT_EQ((std::vector<IDs>{{1, 2}}), manager.deactivateCalls);
  EXPECT_EQ(0, tracker.CloseAllFonts(true));
  EXPECT_EQ(1u, manager.deactivateCalls.size()) << "an empty tracker asks nobody";
}

TEST_F(FontActivationTrackerTest, QuitWithoutDeactivationEmptiesTheTracker) {
  Register(1, "a");
  EXPECT_EQ(0, tracker.CloseAllFonts(false));
  EXPECT_EQ((std::vector<IDs>{{}}), manager.deactivateCalls);
  tracker.CloseAllFonts(true);
  EXPECT_EQ(1u, manager.deactivateCalls.size());
}

TEST_F(FontActivationTrackerTest, StaleDocumentAfterTheQuitTakesNothingFromAnother) {
  Register(1, "stale");
  Register(1, "stale");
  tracker.CloseAllFonts(true);
  Register(1, "fresh");
  Close("stale", false);  // two entries against a count of one
  Register(1, "other");
  EXPECT_EQ((IDs{1}), Close("other"));
}

TEST_F(FontActivationTrackerTest, AgentGoneEndsTheWalkAndKeepsTheFontForLater) {
  manager.agent = false;
  manager.deactivateOneStatus = {{1, 7}, {2, kErrorHornbeamNotRunning}};
  for (unsigned int fontID : {1, 2, 3}) Register(fontID, "a");
  EXPECT_EQ(IDs{}, Close("a", true, kErrorHornbeamNotRunning));
  EXPECT_EQ((IDs{1, 2}), manager.deactivateOneCalls);
  EXPECT_EQ(kErrorHornbeamNotRunning, tracker.CloseAllFonts(true));
  EXPECT_EQ((IDs{1, 2, 2}), manager.deactivateOneCalls);
  EXPECT_EQ(0, tracker.CloseAllFonts(true)) << "all entries are gone, walked or not";
}

TEST_F(FontActivationTrackerTest, WithoutManagerNothingChanges) {
  Register(1, "a");
  manager.connected = false;
  int fontCount = 5;
  EXPECT_EQ(IDs{}, Close("a", true, kErrorHornbeamNotRunning));
  EXPECT_EQ(kErrorHornbeamNotRunning, tracker.CloseAllFonts(true));
  EXPECT_EQ(kErrorHornbeamNotRunning, Activate("a", MakeFontList({})));
  EXPECT_EQ(kErrorHornbeamNotRunning, tracker.ActivateFontsByID("a", nullptr, fontCount));
  EXPECT_EQ(5, fontCount);
  manager.connected = true;
  EXPECT_EQ((IDs{1}), Close("a"));
}

TEST_F(FontActivationTrackerTest, ActivationRegistersWhatWasMatchedAlsoOnFailure) {
  manager.AddFont({{kGM_PostScriptNameKey, "Known"}});
  manager.activateStatus = 0x0300100E;
  const auto fonts = MakeFontList({MakeFontRecord({{kGM_PostScriptNameKey, "Known"}}),
                                   MakeFontRecord({{kGM_PostScriptNameKey, "Unknown"}})});
  EXPECT_EQ(0x0300100E, Activate("doc", fonts));
  EXPECT_EQ((std::vector<std::string>{"Unknown"}), FontNamesOf(problems.get()));
  EXPECT_EQ((IDs{1}), Close("doc"));
}

TEST_F(FontActivationTrackerTest, ChosenFontsAreRegisteredAndDamagedRecordsPassedOver) {
  const auto chosen =
      MakeFontList({MakeMatchedFont("NoID", 0), MakeFontRecord({{kGM_DatabaseIDKey, "4"}}),
                    MakeMatchedFont("Big", 4294967295u), MakeMatchedFont("ActiveByText", 6, "true"),
                    MakeMatchedFont("Active", 7, "1")});
  CFArrayAppendValue(chosen.get(), CFSTR("no record"));
  XCFUtils::PutStringIntoDict(const_cast<CFMutableDictionaryRef>(FontRecord::At(chosen.get(), 0)),
                              kGM_DatabaseIDKey, "4294967296");
  int fontCount = 0;
  EXPECT_EQ(0, tracker.ActivateFontsByID("doc", chosen.get(), fontCount));
  EXPECT_EQ(6, fontCount);
  EXPECT_EQ((IDs{4294967295u, 6}), Close("doc"));
}

TEST_F(FontActivationTrackerTest, WithoutIdentifierTheSubDocumentsCount) {
  const auto withSubs = MakeMatchedFont("Sub", 1);
  const auto subs = ToCFArray(std::vector<std::string>{"sub1", "sub2"});
  CFArrayAppendValue(subs.get(), kCFBooleanTrue);
  CFDictionarySetValue(withSubs.get(), kGM_SubDocumentsWithFontKey, subs.get());
  const auto foreign = MakeMatchedFont("Foreign", 2);
  XCFUtils::PutStringIntoDict(foreign.get(), kGM_SubDocumentsWithFontKey, "sub1");
  int fontCount = 0;
  tracker.ActivateFontsByID("", MakeFontList({withSubs, MakeMatchedFont("None", 3), foreign}).get(),
                            fontCount);
  EXPECT_EQ(1u, tracker.CountFontsOpenedForIdentifier("sub1"));
  EXPECT_EQ(0u, tracker.CountFontsOpenedForIdentifier(""));
  EXPECT_EQ(IDs{}, Close("sub1"));
  EXPECT_EQ((IDs{1}), Close("sub2"));
}

TEST_F(FontActivationTrackerTest, ReentryDuringACloseChangesNothing) {
  Register(1, "a");
  Register(2, "b");
  manager.duringAgentCall = [this] {
    Register(3, "a");
    EXPECT_EQ(0u, tracker.CountFontsOpenedForIdentifier("b"));
    EXPECT_EQ(static_cast<int>(GMutexCodes::kMutexDeadlockErr),
              tracker.CloseAllFontsForIdentifier("b", true, nullptr));
    EXPECT_EQ(static_cast<int>(GMutexCodes::kMutexDeadlockErr), tracker.CloseAllFonts(true));
  };
  EXPECT_EQ((IDs{1}), Close("a"));
  manager.duringAgentCall = nullptr;
  EXPECT_EQ((IDs{2}), Close("b"));
  EXPECT_EQ(0, tracker.CloseAllFonts(true)) << "font 3 was not registered";
  EXPECT_EQ(2u, manager.deactivateCalls.size());
}

TEST_F(FontActivationTrackerTest, AnExceptionPassesOnAndNothingIsLeftBehind) {
  const auto throwing = [] { throw std::runtime_error("agent"); };
  for (const bool agent : {true, false}) {
    manager.agent = agent;
    Register(1, "a");
    manager.duringAgentCall = throwing;
    EXPECT_THROW(tracker.CloseAllFontsForIdentifier("a", true, nullptr), std::runtime_error);
    manager.duringAgentCall = nullptr;
    EXPECT_EQ(IDs{}, Close("a"));

    for (unsigned int fontID : {1, 2, 3}) Register(fontID, "a");
    manager.duringAgentCall = throwing;
    EXPECT_THROW(tracker.CloseAllFonts(true), std::runtime_error);
    manager.duringAgentCall = nullptr;
    EXPECT_EQ(0, tracker.CloseAllFonts(true));
    EXPECT_TRUE(manager.deactivateCalls.empty());
  }
}

TEST(UniqueIdentifierTest, IsOneByteWhenThereIsNoUUID) {
  FontActivationTracker::SetUUIDTextProcForTesting([](char*, CFIndex) { return false; });
  EXPECT_EQ(1u, FontActivationTracker::GenerateUniqueIdentifier().size());
  FontActivationTracker::SetUUIDTextProcForTesting(nullptr);
  EXPECT_NE(FontActivationTracker::GenerateUniqueIdentifier(),
            FontActivationTracker::GenerateUniqueIdentifier());
}

}  // namespace
