#include "GMutex.h"

#include <cerrno>
#include <ctime>

namespace {

constexpr unsigned int kWaitForever = 0xFFFFFFFF;

TErrCode ErrCodeFromPosixError(int error) {
  switch (error) {
    case 0:
      return CoreErrorCodes::kSuccess;
    case EDEADLK:
      return GMutex::kMutexDeadlockErr;
    case EINVAL:
      return GMutex::kMutexInvalidErr;
    case ETIMEDOUT:
      return GLockable::kLockBusyErr;
    default:
      return CoreErrorCodes::kError;
  }
}

timespec MonotonicTimeAhead(unsigned int milliseconds) {
  constexpr long kNanosecondsPerSecond = 1'000'000'000;
  timespec time{};
  clock_gettime(CLOCK_MONOTONIC, &time);
  time.tv_sec += static_cast<time_t>(milliseconds / 1000);
  time.tv_nsec += static_cast<long>(milliseconds % 1000) * 1'000'000;
  if (time.tv_nsec >= kNanosecondsPerSecond) {
    time.tv_nsec -= kNanosecondsPerSecond;
    ++time.tv_sec;
  }
  return time;
}

}  // namespace

GMutex::GMutex() {
  pthread_mutex_init(&mMutex, nullptr);
  pthread_condattr_t attributes;
  pthread_condattr_init(&attributes);
  pthread_condattr_setclock(&attributes, CLOCK_MONOTONIC);
  pthread_cond_init(&mCondition, &attributes);
  pthread_condattr_destroy(&attributes);
}

GMutex::~GMutex() noexcept {
  pthread_cond_destroy(&mCondition);
  pthread_mutex_destroy(&mMutex);
}

TErrCode GMutex::Lock() {
  return LockInternal(kWaitForever);
}

TErrCode GMutex::TryLock() {
  return LockInternal(0);
}

TErrCode GMutex::TryLockWithTimeout(unsigned int milliseconds) {
  return LockInternal(milliseconds);
}

TErrCode GMutex::LockInternal(unsigned int timeout) {
  if (const int error = pthread_mutex_lock(&mMutex); error != 0) return ErrCodeFromPosixError(error);
  TErrCode status = CoreErrorCodes::kSuccess;
  const pthread_t self = pthread_self();
  if (mLockCount != 0 && pthread_equal(mOwner, self) != 0) {
    if (mRecursive) {
      ++mLockCount;
    } else {
      status = kMutexDeadlockErr;
    }
  } else {
    if (mLockCount != 0) {
      status = timeout == 0 ? TErrCode{kLockBusyErr} : ErrCodeFromPosixError(WaitUntilFree(timeout));
    }
    if (status == CoreErrorCodes::kSuccess && mLockCount == 0) {
      mLockCount = 1;
      mOwner = self;
    }
  }
  pthread_mutex_unlock(&mMutex);
  return status;
}

int GMutex::WaitUntilFree(unsigned int timeout) {
  int error = 0;
  if (timeout < kWaitForever) {
    const timespec end = MonotonicTimeAhead(timeout);
    while (mLockCount > 0 && error == 0) error = pthread_cond_timedwait(&mCondition, &mMutex, &end);
  } else {
    while (mLockCount > 0 && error == 0) error = pthread_cond_wait(&mCondition, &mMutex);
  }
  // The time can run out in the moment of the one signal. A waiter that leaves empty-handed passes it on, or
  // the next one would sleep beside a free lock.
  if (error != 0 && mLockCount == 0) pthread_cond_signal(&mCondition);
  return error;
}

TErrCode GMutex::Unlock() {
  if (const int error = pthread_mutex_lock(&mMutex); error != 0) return ErrCodeFromPosixError(error);
  TErrCode status = kMutexDeadlockErr;
  if (mLockCount != 0 && pthread_equal(mOwner, pthread_self()) != 0) {
    --mLockCount;
    status = ErrCodeFromPosixError(mLockCount == 0 ? pthread_cond_signal(&mCondition) : 0);
  }
  pthread_mutex_unlock(&mMutex);
  return status;
}
