#pragma once

#include <CoreFoundation/CoreFoundation.h>

#include "Memory/RetainPtr.h"

/// The tick on which the agent's notifications are handled and the panels' messages sent: 100 times a second,
/// in every mode of the main run loop, so also while a message box is up or an agent is being waited for.
/// What is called must bear to be called from inside itself.
///
/// The timer runs by a clock that stands still while the machine sleeps, so sleep and wake need no telling:
/// it goes on where it was.
///
/// Thread: main.
class NotificationTimer {
 public:
  /// Installs the timer; the first tick comes after 0.01 s.
  ///
  /// \param callback  Called with the timer and a null `info`. It must not throw.
  explicit NotificationTimer(CFRunLoopTimerCallBack callback);
  NotificationTimer(const NotificationTimer&) = delete;
  NotificationTimer& operator=(const NotificationTimer&) = delete;

  /// Uninstalls it.
  ~NotificationTimer();

  /// Does nothing while the timer is installed.
  void installTimer();

  /// No tick comes after it; one that is under way ends in its own time. Also from inside the callback.
  void uninstallTimer();

 private:
  CFRunLoopTimerCallBack m_callback;
  RetainPtr<CFRunLoopTimerRef> timerRef;
};
