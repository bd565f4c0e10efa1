#include "GBlockingLockStrategy.h"

#include "GLockable.h"

TErrCode GBlockingLockStrategy::Lock(GLockable& lockable) {
  return lockable.Lock();
}
