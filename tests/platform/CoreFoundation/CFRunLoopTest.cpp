#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <functional>
#include <thread>

#include "Memory/CFVector.h"

namespace {

using Action = std::function<void(CFRunLoopTimerRef)>;

void Call(CFRunLoopTimerRef timer, void* info) {
  (*static_cast<Action*>(info))(timer);
}

/// Due at once; the action must outlive it.
RetainPtr<CFRunLoopTimerRef> Timer(Action* action, double interval = 0, double delay = 0) {
  CFRunLoopTimerContext context = {0, action, nullptr, nullptr, nullptr};
  return adoptCF(
      CFRunLoopTimerCreate(nullptr, CFAbsoluteTimeGetCurrent() + delay, interval, 0, 0, &Call, &context));
}

constexpr double kLong = 3600;

TEST(CFRunLoop, ATimerWithoutAnIntervalFiresOnceAndIsThenInvalid) {
  int fired = 0;
  Action count = [&fired](CFRunLoopTimerRef) { ++fired; };
  const auto timer = Timer(&count);
  CFRunLoopAddTimer(CFRunLoopGetCurrent(), timer.get(), kCFRunLoopCommonModes);
  EXPECT_EQ(CFRunLoopRunInMode(kCFRunLoopDefaultMode, kLong, false), kCFRunLoopRunFinished);
  EXPECT_EQ(fired, 1);
  EXPECT_FALSE(CFRunLoopTimerIsValid(timer.get()));
  EXPECT_EQ(CFGetRetainCount(timer.get()), 1);
  CFRunLoopAddTimer(CFRunLoopGetCurrent(), timer.get(), kCFRunLoopCommonModes);
  EXPECT_EQ(CFRunLoopRunInMode(kCFRunLoopDefaultMode, 0, false), kCFRunLoopRunFinished);
}

TEST(CFRunLoop, OnlyTheTimersOfTheModeFire) {
  int fired = 0;
  Action count = [&fired](CFRunLoopTimerRef) { ++fired; };
  CFRunLoopRef loop = CFRunLoopGetCurrent();
  const auto timer = Timer(&count, 0.0001);
  CFRunLoopAddTimer(loop, timer.get(), CFSTR("modal"));
  EXPECT_EQ(CFRunLoopRunInMode(kCFRunLoopDefaultMode, kLong, true), kCFRunLoopRunFinished);
  EXPECT_EQ(CFRunLoopRunInMode(CFSTR("modal"), kLong, true), kCFRunLoopRunHandledSource);
  EXPECT_EQ(fired, 1);
  CFRunLoopRemoveTimer(loop, timer.get(), CFSTR("modal"));
  CFRunLoopAddTimer(loop, timer.get(), kCFRunLoopCommonModes);
  EXPECT_EQ(CFRunLoopRunInMode(CFSTR("modal"), kLong, true), kCFRunLoopRunFinished);
  CFRunLoopAddCommonMode(loop, CFSTR("modal"));
  EXPECT_TRUE(CFRunLoopContainsTimer(loop, timer.get(), CFSTR("modal")));
  EXPECT_EQ(CFRunLoopRunInMode(CFSTR("modal"), kLong, true), kCFRunLoopRunHandledSource);
  EXPECT_EQ(CFRunLoopRunInMode(kCFRunLoopCommonModes, kLong, true), kCFRunLoopRunFinished);
  CFRunLoopTimerInvalidate(timer.get());
}

TEST(CFRunLoop, ACallbackMayRunTheLoopWithoutFiringAgain) {
  int depth = 0;
  int deepest = 0;
  Action nest = [&](CFRunLoopTimerRef timer) {
    deepest = std::max(deepest, ++depth);
    EXPECT_EQ(CFRunLoopRunInMode(kCFRunLoopDefaultMode, 0.005, false), kCFRunLoopRunTimedOut);
    CFRunLoopStop(CFRunLoopGetCurrent());
    CFRunLoopTimerInvalidate(timer);
    --depth;
  };
  CFRunLoopAddTimer(CFRunLoopGetCurrent(), Timer(&nest, 0.0001).get(), kCFRunLoopCommonModes);
  EXPECT_EQ(CFRunLoopRunInMode(kCFRunLoopDefaultMode, kLong, false), kCFRunLoopRunStopped);
  EXPECT_EQ(deepest, 1);
}

TEST(CFRunLoop, ATimerMayTakeAwayAnotherThatIsDue) {
  int fired = 0;
  Action never = [&fired](CFRunLoopTimerRef) { ++fired; };
  auto other = Timer(&never, 0, -1);
  Action takeAway = [&other](CFRunLoopTimerRef) {
    CFRunLoopTimerInvalidate(other.get());
    other = nullptr;
  };
  CFRunLoopAddTimer(CFRunLoopGetCurrent(), Timer(&takeAway, 0, -2).get(), kCFRunLoopDefaultMode);
  CFRunLoopAddTimer(CFRunLoopGetCurrent(), other.get(), kCFRunLoopDefaultMode);
  CFRunLoopRun();
  EXPECT_EQ(fired, 0);
}

TEST(CFRunLoop, AnotherThreadCanAddATimerAndStopAWaitingLoop) {
  Action nothing = [](CFRunLoopTimerRef) {};
  CFRunLoopRef loop = CFRunLoopGetCurrent();
  EXPECT_EQ(loop, CFRunLoopGetMain());
  const auto keepsBusy = Timer(&nothing, kLong, kLong);
  CFRunLoopAddTimer(loop, keepsBusy.get(), kCFRunLoopDefaultMode);
  std::atomic<bool> fired{false};
  Action note = [&](CFRunLoopTimerRef) {
    fired = std::this_thread::get_id() != std::thread::id() && CFRunLoopGetCurrent() == loop;
  };
  std::thread thread([&] {
    EXPECT_NE(CFRunLoopGetCurrent(), loop);
    while (!CFRunLoopIsWaiting(loop)) std::this_thread::yield();
    CFRunLoopAddTimer(loop, Timer(&note).get(), kCFRunLoopDefaultMode);
    while (!fired) std::this_thread::yield();
    while (!CFRunLoopIsWaiting(loop)) std::this_thread::yield();
    CFRunLoopWakeUp(loop);
    CFRunLoopStop(loop);
  });
  EXPECT_EQ(CFRunLoopRunInMode(kCFRunLoopDefaultMode, kLong, false), kCFRunLoopRunStopped);
  thread.join();
  CFRunLoopTimerInvalidate(keepsBusy.get());
}

TEST(CFRunLoop, AnEndingThreadGivesItsTimersBack) {
  Action nothing = [](CFRunLoopTimerRef) {};
  const auto timer = Timer(&nothing, kLong, kLong);
  std::thread([&timer] {
    CFRunLoopAddTimer(CFRunLoopGetCurrent(), timer.get(), kCFRunLoopCommonModes);
  }).join();
  EXPECT_EQ(CFGetRetainCount(timer.get()), 1);
  EXPECT_TRUE(CFRunLoopTimerIsValid(timer.get()));
  CFRunLoopTimerInvalidate(timer.get());
}

TEST(CFRunLoop, TheContextIsReleasedOnceAndAfterTheCallback) {
  static int retained = 0;
  static bool releasedInside = false;
  const auto retain = [](const void* info) {
    ++retained;
    return info;
  };
  const auto release = [](const void*) { --retained; };
  int info = 0;
  CFRunLoopTimerContext context = {0, &info, retain, release, nullptr};
  const auto invalidate = [](CFRunLoopTimerRef timer, void*) {
    CFRunLoopTimerInvalidate(timer);
    releasedInside = retained != 1;
  };
  const auto timer = adoptCF(CFRunLoopTimerCreate(nullptr, 0, 1, 0, 0, invalidate, &context));
  EXPECT_EQ(retained, 1);
  CFRunLoopAddTimer(CFRunLoopGetCurrent(), timer.get(), kCFRunLoopDefaultMode);
  CFRunLoopRun();
  EXPECT_FALSE(releasedInside);
  EXPECT_EQ(retained, 0);
}

}  // namespace
