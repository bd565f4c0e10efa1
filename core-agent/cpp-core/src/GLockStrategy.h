#pragma once

#include "GTypes.h"

class GLockable;

/// How a scoped lock takes its lockable: waiting, trying, with a time limit.
class GLockStrategy {
 public:
  GLockStrategy() = default;
  GLockStrategy(const GLockStrategy&) = delete;
  GLockStrategy& operator=(const GLockStrategy&) = delete;
  virtual ~GLockStrategy() = default;

  /// \return 0 when the lockable is now held, else its error code.
  virtual TErrCode Lock(GLockable& lockable) = 0;

  /// Gives back what Lock() took; the base calls the lockable's Unlock().
  virtual TErrCode Unlock(GLockable& lockable);
};
