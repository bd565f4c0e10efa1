#pragma once

#include <CoreFoundation/CoreFoundation.h>

#include <memory>
#include <set>

#include "FontManagerInterface/EServerType.h"
#include "GErrorCodes.h"
#include "GSingleton.h"

class HornbeamPanel;

/// Passes what happens in the font manager on to every registered panel.
///
/// Each operation calls the one of the same name on each panel, in no order that means anything. The first
/// panel that fails ends it: the failure is logged and its code returned. Without panels everything succeeds.
///
/// Thread: main, without a lock; events of the agent are moved there before they get here.
class PanelManager : public GSingleton<PanelManager> {
 public:
  ~PanelManager();

  /// Takes a panel in; it stays until it is removed or the process ends. A null panel changes nothing.
  void AddPanel(std::unique_ptr<HornbeamPanel> panel);
  /// Not while a panel is being called.
  ///
  /// \return The panel, the caller's again; null when it isn't registered.
  std::unique_ptr<HornbeamPanel> RemovePanel(HornbeamPanel* panel);

  TErrCode OpenSocket();
  TErrCode SelectSocket(bool closeListeningSocket);
  /// The first panel's that isn't 0; else 0.
  unsigned int GetSocketPort() const;

  TErrCode SetEnabled(bool enabled);

  /// Has the panels send what they have noted. A call from inside another, which a message box of a panel can
  /// bring about, does nothing and returns 0.
  TErrCode PopNotifications();

  TErrCode PushLoggedInStateChangedNotification(EServerType serverType);
  TErrCode PushOnlineStateChangedNotification(bool isOnline);
  TErrCode PushGoogleWebFontsEnabledNotificaton(bool enabled);
  TErrCode PushFontActivatedNotification(unsigned int fontID);
  TErrCode PushFontDeactivatedNotification(unsigned int fontID);
  TErrCode PushFontMissingNotification(unsigned int fontID);
  TErrCode PushFontNonCompliantNotification(unsigned int fontID);

  TErrCode PushBulkReplicationProgressNotification(CFDictionaryRef progress);
  TErrCode PushBulkReplicationStoppedNotification();
  TErrCode PushIncrementalReplicationProgressNotification(CFDictionaryRef progress);
  TErrCode PushIncrementalReplicationStoppedNotification();
  TErrCode PushGoogleReplicationProgressNotification(CFDictionaryRef progress);
  TErrCode PushGoogleReplicationStoppedNotification();
  TErrCode PushFontServerReplicationProgressNotification(CFDictionaryRef progress);
  TErrCode PushFontServerReplicationStoppedNotification();
  TErrCode PushDataChangedNotification();
  TErrCode PushSmartListsChangedNotification();
  TErrCode PushOfflineDownloadFinishedNotification();

  TErrCode SendFontImages(CFDictionaryRef fontPNGs);

  /// Asks every panel, whatever the others answer.
  void CheckForTypekit();

 private:
  friend class GSingleton<PanelManager>;
  PanelManager();

  std::set<std::unique_ptr<HornbeamPanel>> mPanels;
  bool mIsPopping = false;
};
