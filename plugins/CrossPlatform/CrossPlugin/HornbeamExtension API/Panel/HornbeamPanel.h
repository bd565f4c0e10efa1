#pragma once

#include <CoreFoundation/CoreFoundation.h>

#include "FontManagerInterface/EServerType.h"
#include "GErrorCodes.h"

/// A panel of the font manager inside the host, as PanelManager reaches it.
///
/// Every operation reports by code, 0 for success. What is pushed is either sent at once or noted and sent by
/// the next PopNotifications(), as the panel decides. Dictionaries are not owned and are read during the call
/// only.
///
/// Thread: main.
class HornbeamPanel {
 public:
  HornbeamPanel() = default;
  HornbeamPanel(const HornbeamPanel&) = delete;
  HornbeamPanel& operator=(const HornbeamPanel&) = delete;
  virtual ~HornbeamPanel() = default;

  /// Whether the panel may offer anything: false once the font manager has gone.
  virtual TErrCode SetEnabled(bool enabled) = 0;
  /// Sends what is noted. Called at each tick of the notification timer.
  virtual TErrCode PopNotifications() = 0;

  virtual TErrCode PushLoggedInStateChangedNotification(EServerType serverType) = 0;
  virtual TErrCode PushOnlineStateChangedNotification(bool isOnline) = 0;
  virtual TErrCode PushGoogleWebFontsEnabledNotificaton(bool enabled) = 0;
  virtual TErrCode PushFontActivatedNotification(unsigned int fontID) = 0;
  virtual TErrCode PushFontDeactivatedNotification(unsigned int fontID) = 0;
  virtual TErrCode PushFontMissingNotification(unsigned int fontID) = 0;
  virtual TErrCode PushFontNonCompliantNotification(unsigned int fontID) = 0;

  /// \param progress  "text", "stepIndex" and "numSteps" of the step that the font manager is at.
  virtual TErrCode PushBulkReplicationProgressNotification(CFDictionaryRef progress) = 0;
  virtual TErrCode PushBulkReplicationStoppedNotification() = 0;
  virtual TErrCode PushIncrementalReplicationProgressNotification(CFDictionaryRef progress) = 0;
  virtual TErrCode PushIncrementalReplicationStoppedNotification() = 0;
  virtual TErrCode PushGoogleReplicationProgressNotification(CFDictionaryRef progress) = 0;
  virtual TErrCode PushGoogleReplicationStoppedNotification() = 0;
  virtual TErrCode PushFontServerReplicationProgressNotification(CFDictionaryRef progress) = 0;
  virtual TErrCode PushFontServerReplicationStoppedNotification() = 0;
  virtual TErrCode PushDataChangedNotification() = 0;
  virtual TErrCode PushSmartListsChangedNotification() = 0;
  virtual TErrCode PushOfflineDownloadFinishedNotification() = 0;

  virtual TErrCode OpenSocket() = 0;
  virtual TErrCode SelectSocket(bool closeListeningSocket) = 0;
  /// 0 for a panel without a socket.
  virtual unsigned int GetSocketPort() = 0;
  /// \param fontPNGs  The file of each rendered preview by its font's ID.
  virtual TErrCode SendFontImages(CFDictionaryRef fontPNGs) = 0;

  /// Looks whether the user has the library of the Typekit kind and notes the answer.
  virtual TErrCode CheckForTypekit() = 0;
};
