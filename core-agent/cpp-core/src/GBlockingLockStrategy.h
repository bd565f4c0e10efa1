#pragma once

#include "GLockStrategy.h"

/// Waits until the lock is free.
class GBlockingLockStrategy : public GLockStrategy {
 public:
  TErrCode Lock(GLockable& lockable) override;
};
