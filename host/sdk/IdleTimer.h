#pragma once

#include "BaseType.h"

/// How much of the host's idle time an idle task may still use.
class IdleTimer {
 public:
  virtual ~IdleTimer() = default;

  /// In milliseconds; 0 when the task should return.
  virtual uint32 GetTimeLeft() const = 0;
};
