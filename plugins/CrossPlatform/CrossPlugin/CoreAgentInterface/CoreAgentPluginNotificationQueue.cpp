#include "CoreAgentInterface/CoreAgentPluginNotificationQueue.h"

#include <exception>
#include <utility>

#include "GBlockingLockStrategy.h"
#include "GScopedLock.h"
#include "Utilities/DebugUtils.h"
#include "Utilities/ScopedFlag.h"

void CoreAgentPluginNotificationQueue::EnqueueNotification(
    std::unique_ptr<CoreAgentPluginNotification> notification) {
  if (notification == nullptr) return;
  const GScopedLock lock(m_mutex, true, new GBlockingLockStrategy);
  if (lock.IsLocked()) m_notifications.push_back(std::move(notification));
}

std::unique_ptr<CoreAgentPluginNotification> CoreAgentPluginNotificationQueue::DequeueNotification() {
  const GScopedLock lock(m_mutex, true, new GBlockingLockStrategy);
  if (!lock.IsLocked() || m_notifications.empty()) return nullptr;
  std::unique_ptr<CoreAgentPluginNotification> first = std::move(m_notifications.front());
  m_notifications.pop_front();
  return first;
}

int CoreAgentPluginNotificationQueue::ProcessAllNotifications() {
  // A response can run the run loop, and with it the timer that calls this: the notification taken already
  // would be overtaken.
  if (m_bDraining) return 0;
  const ScopedFlag draining(m_bDraining);
  int handled = 0;
  std::unique_ptr<CoreAgentPluginNotification> current = DequeueNotification();
  while (current != nullptr) {
    // Taken before the response, so that what arrives meanwhile is still met by this drain.
    std::unique_ptr<CoreAgentPluginNotification> next =
        handled + 1 < kMaxPerDrain ? DequeueNotification() : nullptr;
    try {
      current->Respond();
    } catch (const std::exception& error) {
      OutputIndentedAndFormattedString(0, "*** UH-OH, a notification was given up:  %s", error.what());
    }
    ++handled;
    current = std::move(next);
  }
  return handled;
}
