#include <atomic>
#include <thread>

#include "Activation/Vocabulary/WorkgroupRecord.h"
#include "CoreAgentInterface/AgentTest.h"
#include "CoreAgentInterface/CoreAgentPluginNotification.h"
#include "CoreAgentInterface/CoreAgentPluginNotificationQueue.h"
#include "CoreAgentInterface/PluginNotificationKeys.h"
#include "HostAppInterface/HostAppInterface.h"
#include "HostAppInterface/InDesignInterface.h"
#include "Memory/CFCast.h"
#include "Memory/CFVector.h"
#include "support/RecordingPanel.h"

namespace {

class NotificationsTest : public AgentTest {
 protected:
  NotificationsTest() { Connect(); }

  static RetainPtr<CFMutableDictionaryRef> LoginState(bool loggedIn, int serverType = 1) {
    auto state = MakeDictionary();
    CFDictionarySetValue(state.get(), CFSTR("isLoggedIn"), loggedIn ? kCFBooleanTrue : kCFBooleanFalse);
    const auto type = adoptCF(CFNumberCreate(nullptr, kCFNumberIntType, &serverType));
    CFDictionarySetValue(state.get(), CFSTR("serverType"), type.get());
    return state;
  }

  void Send(int kind, void* payload = nullptr) { EXPECT_EQ(CoreAgentNotificationCallback(kind, payload), 0); }

  const RecordingPanel::Registration panel;
};

// ---- What a callback becomes.

TEST_F(NotificationsTest, AKindThatIsUnknownOrLacksItsDataIsIgnored) {
  const std::set<int> kWithDictionary = {2, 15, 17, 19, 21, 27};
  const std::set<int> kWithPointer = {1, 8, 9, 10, 14, 24};
  const std::set<int> kAlone = {0, 3, 4, 16, 18, 20, 22, 23, 25, 28};
  const auto pairs = MakeDictionary();
  CFDictionarySetValue(pairs.get(), CFSTR("text"), CFSTR("Importing"));
  unsigned int fontID = 1;
  for (int kind = -1; kind <= 40; ++kind) {
    SCOPED_TRACE(kind);
    const bool needsData = kWithDictionary.contains(kind) || kWithPointer.contains(kind);
    void* payload = kWithDictionary.contains(kind) ? static_cast<void*>(pairs.get()) : &fontID;
    EXPECT_EQ(CoreAgentPluginNotification::Create(kind, payload) != nullptr,
              needsData || kAlone.contains(kind));
    EXPECT_EQ(CoreAgentPluginNotification::Create(kind, nullptr) != nullptr, kAlone.contains(kind));
  }
  EXPECT_EQ(CoreAgentPluginNotification::Create(19, const_cast<void*>(static_cast<const void*>(CFSTR("no")))),
            nullptr);
}

TEST_F(NotificationsTest, NothingOfTheLibrarysMemoryOutlivesTheCall) {
  unsigned int fontID = 0xFFFFFFF0;
  const auto font = CoreAgentPluginNotification::Create(8, &fontID);
  fontID = 0;
  int64_t stored = 0;
  CFNumberGetValue(dynamicCF<CFNumberRef>(CFDictionaryGetValue(font->GetDictionary(),
                                                               kPluginNotification_FontActivation_Font_ID)),
                   kCFNumberSInt64Type, &stored);
  EXPECT_EQ(stored, 0xFFFFFFF0);

  const auto inner = MakeDictionary();
  CFDictionarySetValue(inner.get(), CFSTR("pngFilename"), CFSTR("a.png"));
  const auto previews = MakeDictionary();
  CFDictionarySetValue(previews.get(), CFSTR("7"), inner.get());
  const auto rendered = CoreAgentPluginNotification::Create(17, previews.get());
  CFDictionaryRemoveAllValues(inner.get());
  CFDictionaryRemoveAllValues(previews.get());
  const auto kept = dynamicCF<CFDictionaryRef>(
      CFDictionaryGetValue(rendered->GetDictionary(), kPluginNotification_FontPNGs));
  ASSERT_NE(kept, nullptr);
  const auto keptInner = dynamicCF<CFDictionaryRef>(CFDictionaryGetValue(kept, CFSTR("7")));
  EXPECT_EQ(FontValue(keptInner, CFSTR("pngFilename")), "a.png");
  EXPECT_FALSE(IsMutableCF(kept));
}

// ---- The drain.

TEST_F(NotificationsTest, WhatArrivesDuringADrainIsHandledInIt) {
  HornbeamGlobals::SetLoggedIn(true);
  Send(2, LoginState(false).get());  // shows a box
  Send(23);
  loom.duringBox = [this] {
    Send(18);
    EXPECT_EQ(agent->ProcessNotifications(), 0) << "no drain inside a drain";
  };
  EXPECT_EQ(agent->ProcessNotifications(), 3);
  EXPECT_EQ(agent->ProcessNotifications(), 0);
}

TEST_F(NotificationsTest, ADrainLeavesWhatIsBeyondItsLimit) {
  constexpr int kLimit = CoreAgentPluginNotificationQueue::kMaxPerDrain;
  for (int i = 0; i < kLimit + 5; ++i) Send(23);
  EXPECT_EQ(agent->ProcessNotifications(), kLimit);
  EXPECT_EQ(agent->ProcessNotifications(), 5);
}

TEST_F(NotificationsTest, AManagerDeletedByAResponseIsNotTouchedAgain) {
  Send(0);
  Send(23);
  loom.duringBox = [this] { agent.reset(); };
  LiveAgent* manager = agent.get();
  EXPECT_EQ(manager->ProcessNotifications(), 2);
  Send(23);
}

TEST_F(NotificationsTest, CallbacksMayRaceWithTheEndOfTheManager) {
  std::atomic<bool> stop = false;
  std::thread agentThread([&stop, this] {
    unsigned int fontID = 7;
    const auto step = MakeDictionary();
    CFDictionarySetValue(step.get(), CFSTR("text"), CFSTR("Importing"));
    while (!stop) {
      Send(8, &fontID);
      Send(15, step.get());
      Send(17, step.get());
    }
  });
  for (int i = 0; i < 50; ++i) {
    Connect();
    agent->ProcessNotifications();
    agent.reset();
  }
  stop = true;
  agentThread.join();
}

// ---- What a notification does.

TEST_F(NotificationsTest, WithoutAManagerNothingIsDone) {
  bool online = false;
  const auto notification = CoreAgentPluginNotification::Create(1, &online);
  agent.reset();
  EXPECT_EQ(notification->Respond(), -1);
  EXPECT_TRUE(loom.online);
}

TEST_F(NotificationsTest, OnlineStateReachesTheFramework) {
  for (bool online : {false, true}) {
    Send(1, &online);
    agent->ProcessNotifications();
    EXPECT_EQ(loom.online, online);
  }
}

struct LoginCase {
  const char* name;
  bool before, now;
  int serverType;
  bool loggedInAfter, servicesAfter;
  size_t boxes;
};

const LoginCase kLoginCases[] = {
    {"log-out", true, false, 1, false, false, 1},
    {"second log-out", false, false, 1, false, true, 0},
    {"log-in", false, true, 1, true, true, 0},
    {"log-out of another server", true, false, 3, true, true, 0},
    {"log-in to another server", false, true, 3, false, true, 0},
};

TEST_F(NotificationsTest, LoginStateChangesFlagsAndServices) {
  for (const LoginCase& row : kLoginCases) {
    SCOPED_TRACE(row.name);
    SetFlags(true);
    HornbeamGlobals::SetLoggedIn(row.before);
    loom.boxes.clear();
    Send(2, LoginState(row.now, row.serverType).get());
    agent->ProcessNotifications();
    EXPECT_EQ(HornbeamGlobals::LoggedIn(), row.loggedInAfter);
    EXPECT_EQ(HornbeamGlobals::PluginServicesEnabled(), row.servicesAfter);
    EXPECT_EQ(loom.boxes.size(), row.boxes);
    EXPECT_TRUE(HornbeamGlobals::ConnectedToCore());
  }
}

TEST_F(NotificationsTest, LoginDuringReplicationChecksTheWorkgroupAtItsEnd) {
  loom.SetPreference("CurrentWorkgroup", 77);
  Send(19, MakeDictionary().get());
  Send(2, LoginState(true).get());
  agent->ProcessNotifications();
  EXPECT_TRUE(HornbeamGlobals::BulkReplicationRunning());
  EXPECT_EQ(loom.GetPreference("CurrentWorkgroup"), 77);
  FontManagerInterface::SetValidWorkgroupSelected(false);
  Send(20);
  agent->ProcessNotifications();
  EXPECT_FALSE(HornbeamGlobals::BulkReplicationRunning());
  EXPECT_EQ(loom.GetPreference("CurrentWorkgroup"), 1);
  Send(21, MakeDictionary().get());
  agent->ProcessNotifications();
  EXPECT_TRUE(HornbeamGlobals::IncrementalReplicationRunning());
  EXPECT_FALSE(HornbeamGlobals::BulkReplicationRunning());
  Send(22);
  agent->ProcessNotifications();
  EXPECT_FALSE(HornbeamGlobals::ReplicationRunning());
}

TEST_F(NotificationsTest, ChangedWorkgroupsAreLookedAtOnlyWithoutAValidOne) {
  for (const int kind : {3, 4}) {
    loom.SetPreference("CurrentWorkgroup", 77);
    FontManagerInterface::SetValidWorkgroupSelected(true);
    Send(kind);
    agent->ProcessNotifications();
    EXPECT_EQ(loom.GetPreference("CurrentWorkgroup"), 77);
    FontManagerInterface::SetValidWorkgroupSelected(false);
    Send(kind);
    agent->ProcessNotifications();
    EXPECT_EQ(loom.GetPreference("CurrentWorkgroup"), 1);
    EXPECT_TRUE(FontManagerInterface::IsValidWorkgroupSelected());
  }
}

TEST_F(NotificationsTest, EachEventReachesThePanels) {
  unsigned int fontID = 0xFFFFFFF0;
  bool on = true;
  const auto step = MakeDictionary();
  CFDictionarySetValue(step.get(), CFSTR("text"), CFSTR("Importing"));
  const auto login = LoginState(true);
  const auto loginElsewhere = LoginState(true, 3);
  const struct {
    int kind;
    void* payload;
    std::vector<std::string> told;
  } kCases[] = {
      {1, &on, {"OnlineStateChanged 1"}},
      {2, login.get(), {"LoggedInStateChanged 1", "CheckForTypekit"}},
      {2, loginElsewhere.get(), {"LoggedInStateChanged 3"}},
      {3, nullptr, {"CheckForTypekit"}},
      {4, nullptr, {"CheckForTypekit"}},
      {8, &fontID, {"FontActivated 4294967280"}},
      {9, &fontID, {"FontDeactivated 4294967280"}},
      {10, &fontID, {"FontMissing 4294967280"}},
      {14, &on, {"GoogleWebFontsEnabled 1"}},
      {15, step.get(), {"GoogleProgress 2"}},
      {16, nullptr, {"GoogleStopped"}},
      {17, step.get(), {"FontImages 1"}},
      {18, nullptr, {"SmartListsChanged"}},
      {19, step.get(), {"BulkProgress 2"}},
      {20, nullptr, {"BulkStopped"}},
      {21, step.get(), {"IncrementalProgress 2"}},
      {22, nullptr, {"IncrementalStopped"}},
      {23, nullptr, {"DataChanged"}},
      {24, &fontID, {"FontNonCompliant 4294967280"}},
      {25, nullptr, {"OfflineDownloadFinished"}},
      {27, step.get(), {"FontServerProgress 2"}},
      {28, nullptr, {"FontServerStopped"}},
      {0, nullptr, {"SetEnabled 0"}},
  };
  for (const auto& row : kCases) {
    SCOPED_TRACE(row.kind);
    Send(row.kind, row.payload);
    agent->ProcessNotifications();
    EXPECT_EQ(panel->Take(), row.told);
  }
}

TEST_F(NotificationsTest, TheMenuIsBuiltBeforeThePanelsLook) {
  static RecordingPanel* sPanel;
  sPanel = panel.operator->();
  InDesignInterface::SetMenuBuilder([] { sPanel->calls.push_back("menu"); });
  Send(3);
  agent->ProcessNotifications();
  InDesignInterface::SetMenuBuilder(nullptr);
  EXPECT_EQ(panel->Take(), (std::vector<std::string>{"menu", "CheckForTypekit"}));
}

TEST_F(NotificationsTest, AnEventWithoutAFontIsDropped) {
  const int64_t beyond = int64_t{1} << 32;
  const int64_t negative = -1;
  const auto notification = CoreAgentPluginNotification::Create(18, nullptr);
  CFMutableDictionaryRef event = notification->GetDictionary();
  CFDictionarySetValue(event, kPluginNotification_FontActivated, kCFBooleanTrue);
  EXPECT_EQ(notification->Respond(), 0);
  for (const int64_t fontID : {beyond, negative}) {
    const auto number = adoptCF(CFNumberCreate(nullptr, kCFNumberSInt64Type, &fontID));
    CFDictionarySetValue(event, kPluginNotification_FontActivation_Font_ID, number.get());
    EXPECT_EQ(notification->Respond(), 0);
  }
  EXPECT_EQ(panel->Take(), std::vector<std::string>{});
}

TEST_F(NotificationsTest, AResponseThatThrowsEndsNeitherTheDrainNorTheNext) {
  class Thrower : public HostAppInterface {
   public:
    void RebuildWorkgroupsMenu() override {}
    void SmartListsChanged() override { throw std::bad_alloc(); }
  };
  auto before = HostAppInterface::ReplaceForTesting(std::make_unique<Thrower>());
  Send(18);
  Send(23);
  EXPECT_EQ(agent->ProcessNotifications(), 2);
  HostAppInterface::ReplaceForTesting(std::move(before));
  Send(23);
  EXPECT_EQ(agent->ProcessNotifications(), 1);
}

TEST_F(NotificationsTest, BoxesOfTheHealthCheckAndOfAShutdownDoNotStack) {
  library.running = 0;
  loom.duringBox = [this] {
    Send(0);
    EXPECT_EQ(agent->ProcessNotifications(), 0) << "no tick inside a tick";
  };
  agent->ProcessNotifications();
  EXPECT_EQ(loom.Messages(), std::vector<std::string>{"FontManagerNotFoundMessage"});
  EXPECT_EQ(panel->Take(), std::vector<std::string>{"SetEnabled 0"});
  EXPECT_FALSE(HornbeamGlobals::PluginServicesEnabled());
  EXPECT_FALSE(HornbeamGlobals::ConnectedToCore());
}

}  // namespace
