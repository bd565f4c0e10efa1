#include <gtest/gtest.h>

#include "FakeFontSystem.h"
#include "client/ProcessFonts.h"

namespace {

using Files = std::set<std::string>;
using IDs = std::vector<unsigned int>;

class ProcessFontsTest : public testing::Test {
 protected:
  FakeFontSystem* m_system = new FakeFontSystem;  // owned by the next
  ProcessFonts m_fonts{std::unique_ptr<FontSystem>(m_system)};
};

TEST_F(ProcessFontsTest, TellsWhichFontsCannotBeSeenAndKeepsTheOthers) {
  EXPECT_EQ(m_fonts.Activate({{1, "a.otf"}, {2, "bad.otf"}, {3, "c.ttf"}}, 1), IDs{2});
  EXPECT_EQ(m_system->added, (Files{"a.otf", "c.ttf"}));
}

TEST_F(ProcessFontsTest, ACollectionStaysUntilItsLastFontHasGone) {
  m_fonts.Activate({{1, "both.ttc"}, {2, "both.ttc"}}, 1);
  m_fonts.Activate({{2, "both.ttc"}}, 2);
  m_fonts.Deactivate({2}, {});
  EXPECT_EQ(m_system->added, Files{"both.ttc"});
  m_fonts.Deactivate({2, 1, 77}, {});
  EXPECT_EQ(m_system->added, Files{});
}

TEST_F(ProcessFontsTest, WhatWasGivenBackStaysVisibleWhenOthersKeepItActive) {
  m_fonts.Activate({{1, "preview.otf", true}, {2, "shared.otf"}, {3, "both.otf", true}}, 1);
  m_fonts.Activate({{3, "both.otf"}}, 2);
  m_fonts.Deactivate({}, {1, 2, 3, 4});
  EXPECT_EQ(m_system->changes, 1);
  EXPECT_EQ(m_system->added, (Files{"shared.otf", "both.otf"}));
}

TEST_F(ProcessFontsTest, AFontWhoseFileHasMovedLeavesTheOldOne) {
  m_fonts.Activate({{1, "old.otf"}}, 1);
  m_fonts.Activate({{1, "new.otf"}}, 2);
  EXPECT_EQ(m_system->added, Files{"new.otf"});
}

struct FollowCase {
  const char* name;
  Files inFolders;
  struct {
    unsigned int fontID;
    bool active;
    const char* file;
    unsigned int order;
  } change;  // font 1 is this process's since message 5
  bool reloads;
  Files added;
};

class Follow : public ProcessFontsTest, public testing::WithParamInterface<FollowCase> {};

TEST_P(Follow, ReadsTheFoldersOnlyWhenTheyTellSomethingNew) {
  m_fonts.Activate({{1, "mine.otf"}}, 5);
  m_system->inFolders = GetParam().inFolders;
  const auto& change = GetParam().change;
  m_fonts.Follow({{change.fontID, change.active, change.file, change.order}});
  EXPECT_EQ(m_system->reloads, GetParam().reloads ? 1 : 0);
  EXPECT_EQ(m_system->added, GetParam().added);
}

const FollowCase kFollowCases[] = {
    {"OwnActivation", {}, {1, true, "link/mine.otf", 6}, false, {"mine.otf"}},
    {"OthersActivation", {}, {2, true, "link/2.otf", 6}, true, {"mine.otf"}},
    {"OthersActivationSeenAlready", {"link/2.otf"}, {2, true, "link/2.otf", 6}, false, {"mine.otf"}},
    {"OthersLocalActivation", {}, {2, true, "", 6}, false, {"mine.otf"}},
    {"OthersDeactivation", {"link/2.otf"}, {2, false, "link/2.otf", 6}, true, {"mine.otf"}},
    {"OthersDeactivationNeverSeen", {}, {2, false, "link/2.otf", 6}, false, {"mine.otf"}},
    {"TakenAwayByHand", {}, {1, false, "link/mine.otf", 6}, true, {}},
    {"TakenAwayBeforeItWasActivatedAgain", {}, {1, false, "link/mine.otf", 4}, false, {"mine.otf"}}};

INSTANTIATE_TEST_SUITE_P(Changes, Follow, testing::ValuesIn(kFollowCases),
                         [](const auto& info) { return info.param.name; });

TEST_F(ProcessFontsTest, OnlyTheLastWordOnAFontCounts) {
  m_fonts.Follow({{2, true, "link/2.otf", 6}, {2, false, "link/2.otf", 7}});
  EXPECT_EQ(m_system->reloads, 0);
}

}  // namespace
