#include <gtest/gtest.h>

#include <atomic>
#include <future>
#include <mutex>

#include "GErrorCodes.h"
#include "Memory/CFCast.h"
#include "client/NotificationCenter.h"
#include "client/RecordKeys.h"

namespace {

// Receivers are plain functions, so what they saw is kept beside them.
std::mutex sMutex;
std::vector<std::pair<int, int>> sSeen;
std::promise<void>* sEntered = nullptr;
std::promise<void>* sBlocked = nullptr;
std::shared_future<void> sLeave;
NotificationCenter* sCenter = nullptr;
std::atomic<unsigned int> sUnregistered = ~0u;

int Record(int kind, void* data) {
  std::scoped_lock lock(sMutex);
  int32_t value = 0;
  if (kind == kNotification_BulkReplicationProgress || kind == kNotification_GoogleReplicationProgress) {
    CFTypeRef step = CFDictionaryGetValue(static_cast<CFDictionaryRef>(data), RecordKeys::kStepIndex);
    CFNumberGetValue(dynamicCF<CFNumberRef>(step), kCFNumberSInt32Type, &value);
  } else if (data != nullptr) {
    value = *static_cast<int32_t*>(data);
  }
  sSeen.emplace_back(kind, value);
  return 0;
}

// At the first event.
int Block(int, void*) {
  if (std::promise<void>* blocked = std::exchange(sBlocked, nullptr)) {
    blocked->set_value();
    sLeave.wait();
  }
  return 0;
}

// Answers to the mark that Flush() sends, and to nothing that is still on its way before it.
int Mark(int kind, void*) {
  if (kind == kNotification_SmartListsChanged) sEntered->set_value();
  return 0;
}

int UnregisterItself(int, void*) {
  sUnregistered = sCenter->Unregister(&UnregisterItself);
  return 0;
}

int Throw(int, void*) {
  throw 1;
}

class NotificationCenterTest : public testing::Test {
 protected:
  NotificationCenterTest() {
    sSeen.clear();
    sCenter = &m_center;
    m_center.Start();
  }
  // Until all that was posted has been delivered: a receiver of its own hears it last.
  void Flush() {
    std::promise<void> entered;
    sEntered = &entered;
    ASSERT_EQ(m_center.Register(&Mark), CoreErrorCodes::kSuccess);
    m_center.Post({{kNotification_SmartListsChanged}});
    entered.get_future().wait();
    m_center.Unregister(&Mark);
  }

  // Until m_leave is set.
  void BlockReceivers() {
    std::promise<void> blocked;
    sBlocked = &blocked;
    sLeave = m_leave.get_future();
    m_center.Register(&Block);
    m_center.Post({{kNotification_WorkgroupsChanged}});
    blocked.get_future().wait();
  }

  std::promise<void> m_leave;
  std::vector<int> m_prepared;
  NotificationCenter m_center{[this](const auto& batch) {
                                for (const auto& one : batch) m_prepared.push_back(one.kind);
                              },
                              [] { return std::chrono::seconds(0); }};
};

TEST_F(NotificationCenterTest, EventsAreSeenInOrderBeforeReceiversHearOfThem) {
  m_center.Register(&Record);
  m_center.Post({{kNotification_FontActivated, 7u}, {kNotification_FontDeactivated, 8u}});
  m_center.Post({{kNotification_AgentShutdown}});
  Flush();
  const decltype(sSeen) expected{{8, 7}, {9, 8}, {0, 0}, {18, 0}};
  EXPECT_EQ(sSeen, expected);
  EXPECT_EQ(m_prepared, (std::vector<int>{8, 9, 0, 18}));
}

TEST_F(NotificationCenterTest, UnregisterWaitsForARunningReceiver) {
  BlockReceivers();
  auto unregistered = std::async(std::launch::async, [this] { return m_center.Unregister(&Block); });
  EXPECT_EQ(unregistered.wait_for(std::chrono::milliseconds(20)), std::future_status::timeout);
  m_leave.set_value();
  EXPECT_EQ(unregistered.get(), CoreErrorCodes::kSuccess);
}

TEST_F(NotificationCenterTest, AProgressThatWaitsGivesWayToTheNextOfItsRun) {
  BlockReceivers();
  m_center.Register(&Record);
  const auto progress = [](int kind, uint32_t step) {
    return Notification{kind, Notification::Progress{"", step, 9}};
  };
  for (uint32_t step = 1; step <= 3; ++step) {
    m_center.Post({progress(kNotification_BulkReplicationProgress, step)});
    m_center.Post({progress(kNotification_GoogleReplicationProgress, step)});
  }
  m_center.Post({{kNotification_BulkReplicationStopped}});
  m_center.Post({progress(kNotification_BulkReplicationProgress, 4)});
  m_center.Post({progress(kNotification_GoogleReplicationProgress, 5)});
  m_leave.set_value();
  Flush();
  const decltype(sSeen) expected{{19, 3}, {15, 5}, {20, 0}, {19, 4}, {18, 0}};
  EXPECT_EQ(sSeen, expected);
}

TEST_F(NotificationCenterTest, AReceiverMayUnregisterItself) {
  m_center.Register(&UnregisterItself);
  m_center.Post({{kNotification_WorkgroupsChanged}, {kNotification_WorkgroupsChanged}});
  Flush();
  EXPECT_EQ(sUnregistered, CoreErrorCodes::kSuccess);
}

TEST_F(NotificationCenterTest, AReceiverThatThrowsDoesNotStopTheOthers) {
  m_center.Register(&Throw);
  m_center.Register(&Record);
  m_center.Post({{kNotification_WorkgroupsChanged}});
  Flush();
  const decltype(sSeen) expected{{3, 0}, {18, 0}};
  EXPECT_EQ(sSeen, expected);
}

TEST_F(NotificationCenterTest, StoppedAndStartedAgainItForgetsWhatWaited) {
  m_center.Register(&Record);
  m_center.Stop();
  m_center.Post({{kNotification_FontActivated, 7u}});
  m_center.Start();
  Flush();
  const decltype(sSeen) expected{{18, 0}};
  EXPECT_EQ(sSeen, expected);
}

}  // namespace
