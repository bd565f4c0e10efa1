#pragma once

#include "GErrorCodes.h"

/// Anything that can be locked.
///
/// Every operation returns 0 or an error code; none throws. Any thread.
class GLockable : public GLockableCodes {
 public:
  GLockable() = default;
  GLockable(const GLockable&) = delete;
  GLockable& operator=(const GLockable&) = delete;
  virtual ~GLockable() = default;

  /// Waits for as long as it takes.
  virtual TErrCode Lock() = 0;

  /// \return kLockBusyErr at once when another thread holds the lock.
  virtual TErrCode TryLock() = 0;

  /// Waits up to `milliseconds`. The base polls TryLock() every 50 ms, for lockables that have nothing
  /// better.
  ///
  /// \return kLockBusyErr when the time is up; any other code of TryLock() ends the wait at once.
  virtual TErrCode TryLockWithTimeout(unsigned int milliseconds);

  virtual TErrCode Unlock() = 0;
};
