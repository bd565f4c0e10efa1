#include "GLockStrategy.h"

#include "GLockable.h"

TErrCode GLockStrategy::Unlock(GLockable& lockable) {
  return lockable.Unlock();
}
