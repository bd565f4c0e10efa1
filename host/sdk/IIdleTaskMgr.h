#pragma once

#include "IIdleTask.h"
#include "IPMUnknown.h"

/// The host's idle loop. Belongs to the session.
class IIdleTaskMgr : public IPMUnknown {
 public:
  static constexpr PMIID kDefaultIID = IID_IIDLETASKMGR;

  /// \param task  Retained until it is removed. One that is there already gets the new delay.
  /// \param delay  Milliseconds to the first run.
  virtual void AddTask(IIdleTask* task, uint32 delay) = 0;

  /// Does nothing for a task that is not there.
  virtual void RemoveTask(IIdleTask* task) = 0;
};
