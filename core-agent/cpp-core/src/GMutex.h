#pragma once

#include <pthread.h>

#include "GLockable.h"

/// A lock that knows its owner: a thread that locks it twice gets an error instead of a hang.
///
/// The lock is the count and the owner; the POSIX mutex only guards these fields and is held no longer than
/// a call lasts. Waiters sleep on the condition. Timed waits follow the monotonic clock.
class GMutex : public GLockable, public GMutexCodes {
 public:
  GMutex();
  /// The lock must be free and nobody waiting.
  ~GMutex() noexcept override;

  /// \return kMutexDeadlockErr when the calling thread holds the lock already; nothing changes then.
  TErrCode Lock() override;

  /// \return kMutexDeadlockErr as Lock(); kLockBusyErr when another thread holds the lock.
  TErrCode TryLock() override;

  /// \return as TryLock(), after up to `milliseconds`; 0xFFFFFFFF waits without end.
  TErrCode TryLockWithTimeout(unsigned int milliseconds) override;

  /// \return kMutexDeadlockErr, with nothing changed, unless the calling thread holds the lock.
  TErrCode Unlock() override;

 private:
  TErrCode LockInternal(unsigned int timeout);
  int WaitUntilFree(unsigned int timeout);

  pthread_mutex_t mMutex;
  pthread_cond_t mCondition;
  unsigned int mLockCount = 0;
  bool mRecursive = false;
  pthread_t mOwner{};
};
