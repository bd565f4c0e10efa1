#include <gtest/gtest.h>

#include <memory>

#include "NotificationTimer.h"

namespace {

class NotificationTimerTest : public testing::Test {
 protected:
  NotificationTimerTest() { sTicks = 0; }

  static void Tick(CFRunLoopTimerRef, void*) {
    ++sTicks;
    if (sTimer != nullptr) sTimer->uninstallTimer();
  }

  /// Whether the main run loop has a timer of ours left.
  static bool IsTicking() {
    return CFRunLoopRunInMode(kCFRunLoopDefaultMode, 0, false) != kCFRunLoopRunFinished;
  }

  static inline int sTicks = 0;
  static inline NotificationTimer* sTimer = nullptr;
};

TEST_F(NotificationTimerTest, IsInstalledOnceHoweverOftenAsked) {
  NotificationTimer timer(&Tick);
  timer.installTimer();
  timer.uninstallTimer();
  EXPECT_FALSE(IsTicking());
  timer.uninstallTimer();
  timer.installTimer();
  EXPECT_TRUE(IsTicking());
}

TEST_F(NotificationTimerTest, MayBeUninstalledByItsOwnTick) {
  NotificationTimer timer(&Tick);
  sTimer = &timer;
  while (sTicks < 1) CFRunLoopRunInMode(kCFRunLoopDefaultMode, 0.05, true);
  sTimer = nullptr;
  EXPECT_FALSE(IsTicking());
  EXPECT_EQ(sTicks, 1);
}

}  // namespace
