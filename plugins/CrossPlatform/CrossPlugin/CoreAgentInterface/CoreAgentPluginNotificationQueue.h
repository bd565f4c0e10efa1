#pragma once

#include <deque>
#include <memory>

#include "CoreAgentInterface/CoreAgentPluginNotification.h"
#include "GMutex.h"

/// What the agent has reported and the main thread hasn't handled yet, in order of arrival.
///
/// Threads: the library's enqueues, the main one dequeues and handles. The lock is held for one step of the
/// queue at a time and never while a notification is handled, so the library is never kept waiting by a
/// message box.
class CoreAgentPluginNotificationQueue {
 public:
  /// One drain handles at most this many, so that a busy agent can't keep the main thread for ever.
  static constexpr int kMaxPerDrain = 10000;

  /// Adds to the end; a null is ignored.
  void EnqueueNotification(std::unique_ptr<CoreAgentPluginNotification> notification);

  /// Takes the oldest; null when there is none.
  std::unique_ptr<CoreAgentPluginNotification> DequeueNotification();

  /// Lets each notification respond and frees it. What arrives meanwhile is handled as well, up to the limit.
  /// A call from inside a response does nothing. Main thread.
  ///
  /// \return How many were handled.
  int ProcessAllNotifications();

 private:
  GMutex m_mutex;
  std::deque<std::unique_ptr<CoreAgentPluginNotification>> m_notifications;
  bool m_bDraining = false;
};
