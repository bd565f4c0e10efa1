#include <gtest/gtest.h>

#include "Panel/PanelManager.h"
#include "support/RecordingPanel.h"

namespace {

PanelManager& Panels() {
  return *PanelManager::GetSharedInstance();
}

TEST(PanelManagerTest, EveryPanelIsToldUntilOneFails) {
  const RecordingPanel::Registration a;
  const RecordingPanel::Registration b;
  EXPECT_EQ(Panels().PushFontMissingNotification(0xFFFFFFFF), 0u);
  EXPECT_EQ(a->Take(), std::vector<std::string>{"FontMissing 4294967295"});
  EXPECT_EQ(b->Take(), std::vector<std::string>{"FontMissing 4294967295"});

  a->results["DataChanged"] = b->results["DataChanged"] = CoreErrorCodes::kNotInitialized;
  EXPECT_EQ(Panels().PushDataChangedNotification(), CoreErrorCodes::kNotInitialized);
  EXPECT_EQ(a->calls.size() + b->calls.size(), 1u);
  a->results["CheckForTypekit"] = b->results["CheckForTypekit"] = CoreErrorCodes::kError;
  Panels().CheckForTypekit();
  EXPECT_EQ(a->calls.size() + b->calls.size(), 3u) << "no answer to this question ends it";
}

TEST(PanelManagerTest, MessagesAreNotSentFromInsideTheirSending) {
  const RecordingPanel::Registration panel;
  panel->duringPop = [] { EXPECT_EQ(Panels().PopNotifications(), 0u); };
  panel->results["Pop"] = CoreErrorCodes::kError;
  EXPECT_EQ(Panels().PopNotifications(), CoreErrorCodes::kError);
  EXPECT_EQ(panel->Take(), std::vector<std::string>{"Pop"});
  panel->duringPop = nullptr;
  Panels().PopNotifications();
  EXPECT_EQ(panel->Take(), std::vector<std::string>{"Pop"}) << "a failure must not bar the next tick";
}

}  // namespace
