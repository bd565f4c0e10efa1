#include <gtest/gtest.h>

#include <atomic>
#include <future>
#include <mutex>

#include "GErrorCodes.h"
#include "client/NotificationCenter.h"

namespace {

// Receivers are plain functions, so what they saw is kept beside them.
std::mutex sMutex;
std::vector<std::pair<int, unsigned int>> sSeen;
std::promise<void>* sEntered = nullptr;
std::shared_future<void> sLeave;
NotificationCenter* sCenter = nullptr;
std::atomic<unsigned int> sUnregistered = ~0u;

int Record(int kind, void* data) {
  std::scoped_lock lock(sMutex);
  sSeen.emplace_back(kind, data == nullptr ? 0 : *static_cast<unsigned int*>(data));
  return 0;
}

int Block(int, void*) {
  sEntered->set_value();
  sLeave.wait();
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
    m_center.Post({{kNotification_SmartListsChanged, {}, {}, 0}});
    entered.get_future().wait();
    m_center.Unregister(&Mark);
  }

  std::vector<int> m_prepared;
  NotificationCenter m_center{[this](const auto& batch) {
                                for (const auto& one : batch) m_prepared.push_back(one.kind);
                              },
                              [] { return std::chrono::seconds(0); }};
};

TEST_F(NotificationCenterTest, DeliversInOrderWithTheDataOfTheKind) {
  m_center.Register(&Record);
  m_center.Post({{kNotification_FontActivated, 7u, "f", 1}, {kNotification_FontDeactivated, 8u, "g", 2}});
  m_center.Post({{kNotification_AgentShutdown, {}, {}, 3}});
  Flush();
  const decltype(sSeen) expected{{8, 7}, {9, 8}, {0, 0}, {18, 0}};
  EXPECT_EQ(sSeen, expected);
  EXPECT_EQ(m_prepared, (std::vector<int>{8, 9, 0, 18}));
}

TEST_F(NotificationCenterTest, UnregisterWaitsForARunningReceiver) {
  std::promise<void> entered;
  std::promise<void> leave;
  sEntered = &entered;
  sLeave = leave.get_future();
  m_center.Register(&Block);
  m_center.Post({{kNotification_WorkgroupsChanged, {}, {}, 0}});
  entered.get_future().wait();
  auto unregistered = std::async(std::launch::async, [this] { return m_center.Unregister(&Block); });
  EXPECT_EQ(unregistered.wait_for(std::chrono::milliseconds(20)), std::future_status::timeout);
  leave.set_value();
  EXPECT_EQ(unregistered.get(), CoreErrorCodes::kSuccess);
}

TEST_F(NotificationCenterTest, AReceiverMayUnregisterItself) {
  m_center.Register(&UnregisterItself);
  m_center.Post({{kNotification_WorkgroupsChanged, {}, {}, 0}, {kNotification_WorkgroupsChanged, {}, {}, 0}});
  Flush();
  EXPECT_EQ(sUnregistered, CoreErrorCodes::kSuccess);
}

TEST_F(NotificationCenterTest, AReceiverThatThrowsDoesNotStopTheOthers) {
  m_center.Register(&Throw);
  m_center.Register(&Record);
  m_center.Post({{kNotification_WorkgroupsChanged, {}, {}, 0}});
  Flush();
  const decltype(sSeen) expected{{3, 0}, {18, 0}};
  EXPECT_EQ(sSeen, expected);
}

TEST_F(NotificationCenterTest, StoppedAndStartedAgainItForgetsWhatWaited) {
  m_center.Register(&Record);
  m_center.Stop();
  m_center.Post({{kNotification_FontActivated, 7u, "f", 1}});
  m_center.Start();
  Flush();
  const decltype(sSeen) expected{{18, 0}};
  EXPECT_EQ(sSeen, expected);
}

}  // namespace
