#include <gtest/gtest.h>

#include <thread>
#include <vector>

#include "GBlockingLockStrategy.h"
#include "GLoggerTestAccess.h"
#include "GMutex.h"
#include "GScopedLock.h"

namespace {

template <typename Operation>
TErrCode OnAnotherThread(Operation operation) {
  TErrCode result = CoreErrorCodes::kUnknownError;
  std::thread([&] { result = operation(); }).join();
  return result;
}

// Has only TryLock(), and answers by a list.
class ScriptedLockable : public GLockable {
 public:
  explicit ScriptedLockable(std::vector<TErrCode> answers) : m_answers(std::move(answers)) {}
  TErrCode Lock() override { return TryLock(); }
  TErrCode TryLock() override {
    const std::size_t index = std::min(tries++, m_answers.size() - 1);
    return m_answers[index];
  }
  TErrCode Unlock() override {
    ++unlocks;
    return CoreErrorCodes::kSuccess;
  }

  std::size_t tries = 0;
  int unlocks = 0;

 private:
  std::vector<TErrCode> m_answers;
};

}  // namespace

TEST(GMutex, TellsItsOwnerFromOtherThreads) {
  GMutex mutex;
  ASSERT_EQ(mutex.Lock(), 0u);
  EXPECT_EQ(mutex.Lock(), GMutex::kMutexDeadlockErr);
  EXPECT_EQ(mutex.TryLock(), GMutex::kMutexDeadlockErr);
  EXPECT_EQ(OnAnotherThread([&] { return mutex.TryLock(); }), GLockable::kLockBusyErr);
  EXPECT_EQ(OnAnotherThread([&] { return mutex.TryLockWithTimeout(5); }), GLockable::kLockBusyErr);
  EXPECT_EQ(OnAnotherThread([&] { return mutex.Unlock(); }), GMutex::kMutexDeadlockErr);
  EXPECT_EQ(mutex.Unlock(), 0u);
  EXPECT_EQ(mutex.Unlock(), GMutex::kMutexDeadlockErr);
  EXPECT_EQ(OnAnotherThread([&] {
              const TErrCode status = mutex.TryLock();
              mutex.Unlock();
              return status;
            }),
            0u);
}

// Waiters with and without a time limit among each other: a signal that a leaving waiter swallowed would
// leave another asleep beside a free lock, and the test would not end.
TEST(GMutex, LosesNoWakeUpToWaitersThatGiveUp) {
  GMutex mutex;
  int guarded = 0;
  std::atomic<int> taken = 0;
  std::vector<std::thread> threads;
  for (int t = 0; t < 8; ++t) {
    threads.emplace_back([&, t] {
      for (int i = 0; i < 300; ++i) {
        const TErrCode status = t % 2 == 0 ? mutex.Lock() : mutex.TryLockWithTimeout(i % 2);
        if (status != 0) continue;
        ++guarded;
        ++taken;
        if (i % 16 == 0) std::this_thread::yield();
        mutex.Unlock();
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(guarded, taken.load());
  EXPECT_GE(guarded, 4 * 300);
}

TEST(GLockable, PollsUntilTheTimeIsUpOrAnotherAnswerComes) {
  ScriptedLockable busy({GLockable::kLockBusyErr});
  EXPECT_EQ(busy.TryLockWithTimeout(0), GLockable::kLockBusyErr);
  EXPECT_EQ(busy.tries, 1u);
  EXPECT_EQ(busy.TryLockWithTimeout(51), GLockable::kLockBusyErr);
  EXPECT_EQ(busy.tries, 3u);
  ScriptedLockable broken({GLockable::kLockBusyErr, GMutex::kMutexInvalidErr});
  EXPECT_EQ(broken.TryLockWithTimeout(1000), GMutex::kMutexInvalidErr);
  ScriptedLockable freed({GLockable::kLockBusyErr, 0});
  EXPECT_EQ(freed.TryLockWithTimeout(1000), 0u);
  EXPECT_EQ(freed.tries, 2u);
}

TEST(GScopedLock, HoldsOnlyWhatItGot) {
  ScriptedLockable later({0});
  {
    GScopedLock lock(later, false, new GBlockingLockStrategy);
    EXPECT_FALSE(lock.IsLocked());
  }
  EXPECT_EQ(later.unlocks, 0);
  {
    GScopedLock lock(later);
    EXPECT_TRUE(lock.IsLocked());
    EXPECT_TRUE(lock.Lock());
    EXPECT_EQ(later.tries, 1u);
    lock.Unlock();
    EXPECT_FALSE(lock.IsLocked());
  }
  EXPECT_EQ(later.unlocks, 1);
}

TEST(GScopedLock, ReportsALockItCannotHave) {
  LogCapture log;
  GMutex mutex;
  const GScopedLock outer(mutex, true, new GBlockingLockStrategy);
  const GScopedLock inner(mutex, true, new GBlockingLockStrategy);
  EXPECT_FALSE(inner.IsLocked());
  ASSERT_EQ(log.lines.size(), 1u);
  EXPECT_TRUE(
      log.Contains("[Lockable]\t[Debug]\tError='GMutex::kMutexDeadlockErr'  "
                   "File='core-agent/cpp-core/src/GScopedLock'  Line="))
      << log.lines[0];
  EXPECT_TRUE(log.Contains("Expression='mLockStrategy->Lock(mLockable)'  Code='16781323'  \n"));
}

// The report takes the log's own locks; when those fail it must not report that without end.
TEST(GScopedLock, SurvivesAFailureInsideItsOwnReport) {
  GMutex mutex;
  const GScopedLock held(mutex);
  const GScopedLock levels(GLoggerTestAccess::LevelsMutex());
  const GScopedLock failing(mutex);
  EXPECT_FALSE(failing.IsLocked());
}
