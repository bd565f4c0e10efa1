#pragma once

#include <CoreFoundation/CoreFoundation.h>

#include <memory>

#include "CoreAgentInterface/Shuttle/PluginInterface.h"
#include "Memory/RetainPtr.h"

/// One event of the agent, copied out of the library's memory on the library's thread and acted on later, on
/// the main thread.
class CoreAgentPluginNotification {
 public:
  CoreAgentPluginNotification();

  /// Makes the notification for one callback of the library. Any thread.
  ///
  /// \param data  As the kind tells; copied, never kept.
  /// \return Null for a kind that means nothing to the plug-in, and, with a log line, for one whose data is
  ///         missing or no dictionary.
  static std::unique_ptr<CoreAgentPluginNotification> Create(PluginInterface::ECallbackKind kind, void* data);

  /// The event in the form of key and value. Owned by the notification.
  CFMutableDictionaryRef GetDictionary() const { return m_dictionary.get(); }

  /// Does what the event asks of the plug-in's own state and passes it on to the host. Main thread; can show
  /// message boxes.
  ///
  /// \return -1 without a manager, with nothing done, else 0.
  int Respond();

 private:
  bool IsFor(CFStringRef key) const;
  void SetFlag(CFStringRef key, bool value);
  bool GetFlag(CFStringRef key, bool fallback) const;
  void RespondToOnlineState();
  void RespondToLoggedInState();
  void RespondToWorkgroups();
  void RespondToAgentShutdown();
  bool RespondToFont();
  bool RespondToReplication();
  void RespondToTheRest();

  RetainPtr<CFMutableDictionaryRef> m_dictionary;
};

/// What the library is given as its callback. Any thread.
///
/// \return 0 always.
int CoreAgentNotificationCallback(PluginInterface::ECallbackKind kind, void* data);
