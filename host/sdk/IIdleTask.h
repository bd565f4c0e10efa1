#pragma once

#include "IPMUnknown.h"
#include "IdleTimer.h"

/// Work that the host's idle loop does on the main thread. A plug-in adds its task to the session under an
/// interface number of its own or under IID_IIDLETASK.
class IIdleTask : public IPMUnknown {
 public:
  static constexpr PMIID kDefaultIID = IID_IIDLETASK;

  /// Results of RunTask() that are no delay.
  static constexpr uint32 kNeverAgain = 0xFFFFFFFF;    ///< The task is removed.
  static constexpr uint32 kOnFlagChange = 0xFFFFFFFE;  ///< Run again when the application's flags change.

  /// A bit of the application's flags: the user is at work, say opening or closing a document.
  static constexpr uint32 kUserActive = 0x00000002;

  /// \param appFlags  What the application is doing.
  /// \param timer  Lives for the call.
  /// \return Milliseconds to the next run, or one of the values above.
  virtual uint32 RunTask(uint32 appFlags, IdleTimer* timer) = 0;

  /// Hands the task to the session's IIdleTaskMgr.
  ///
  /// \param delay  Milliseconds to the first run.
  virtual void InstallTask(uint32 delay) = 0;
  virtual void UninstallTask() = 0;

  /// A name for the log. Lives as long as the task.
  virtual const char* TaskName() = 0;
};
