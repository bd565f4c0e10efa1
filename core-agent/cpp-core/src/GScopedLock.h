#pragma once

#include <memory>

#include "GErrorCodes.h"
#include "GLockStrategy.h"

class GLockable;

/// Holds a lockable for a scope.
///
/// A lock that can't be had is logged ("Lockable") and doesn't throw: code that must not go on without it
/// tests IsLocked(). The usual call is
///
///     GScopedLock lock(sMutex, true, new GBlockingLockStrategy);
///     if (!lock.IsLocked()) return ...;
///
/// Thread: the one that made it.
class GScopedLock : public GScopedLockCodes {
 public:
  /// \param lockable  Must outlive the scoped lock.
  /// \param lockNow   False leaves the lock alone until Lock().
  /// \param strategy  Owned from here on; null stands for a GBlockingLockStrategy.
  explicit GScopedLock(GLockable& lockable, bool lockNow = true, GLockStrategy* strategy = nullptr);
  GScopedLock(const GScopedLock&) = delete;
  GScopedLock& operator=(const GScopedLock&) = delete;

  /// Unlocks when locked.
  ~GScopedLock();

  /// Takes the lock unless it is held already.
  ///
  /// \return IsLocked() afterwards.
  bool Lock();

  /// Gives the lock back when held; after a failure it still counts as held.
  void Unlock();

  bool IsLocked() const { return mIsLocked; }

 private:
  GLockable& mLockable;
  bool mIsLocked = false;
  std::unique_ptr<GLockStrategy> mLockStrategy;
};
