#pragma once

#include <CoreFoundation/CoreFoundation.h>

#include <memory>

#include "FontManagerInterface/EServerType.h"

/// Where the font manager's events go: the host's side of a notification, told apart from what it means to
/// the plug-in's own state.
///
/// Every operation has a neutral default, apart from the menu's. IDs are font IDs of the font manager;
/// dictionaries are not owned and are read during the call only.
///
/// Life: the one instance is made by the first GetHostAppInterface() and stays to the end of the process.
///
/// Thread: main.
class HostAppInterface {
 public:
  HostAppInterface() = default;
  HostAppInterface(const HostAppInterface&) = delete;
  HostAppInterface& operator=(const HostAppInterface&) = delete;

  /// The one instance, an InDesignInterface made on the first call. Never null.
  static HostAppInterface* GetHostAppInterface();

  /// For tests: puts another instance in the place of the one. Null makes the next GetHostAppInterface() make
  /// one again.
  ///
  /// \return What stood there, null for none.
  static std::unique_ptr<HostAppInterface> ReplaceForTesting(std::unique_ptr<HostAppInterface> instance);

  // The virtual operations stand in the order of the published table of the class; it doesn't change.

  /// The user's workgroups, or what may be done in them, have changed.
  virtual void RebuildWorkgroupsMenu() = 0;
  virtual void HandlePanelDataChanged();
  virtual void SetCanExportFontsForDocument(bool canExport);
  /// False unless a host keeps the flag here.
  virtual bool CanExportFontsForDocument();
  virtual void SetMissingFontsDialogNeeded();
  virtual void SetLoggedInState(bool isLoggedIn, EServerType serverType);
  virtual void SetIsOnline(bool isOnline);
  virtual void FontActivated(unsigned int fontID);
  /// Whether the host has been told of that font. True unless a host keeps account.
  virtual bool FontActivationRecognized(unsigned int fontID);
  virtual void DesignActivationFailedComplianceCheck(unsigned int fontID);
  virtual void FontDeactivated(unsigned int fontID);
  virtual void FontMissing(unsigned int fontID);
  virtual void BulkReplicationProgress(CFDictionaryRef progress);
  virtual void BulkReplicationStopped();
  virtual void IncrementalReplicationProgress(CFDictionaryRef progress);
  virtual void IncrementalReplicationStopped();
  virtual void PrismletReplicationProgress(CFDictionaryRef progress);
  virtual void PrismletReplicationStopped();
  virtual void GoogleReplicationProgress(CFDictionaryRef progress);
  virtual void GoogleReplicationStopped();
  virtual void GoogleWebFontsEnabled(bool enabled);
  virtual void FontServerReplicationProgress(CFDictionaryRef progress);
  virtual void FontServerReplicationStopped();
  /// \param fontPNGs  The file of each rendered preview by its font's ID.
  virtual void PreviewPNGsRendered(CFDictionaryRef fontPNGs);
  virtual void SmartListsChanged();
  virtual void OfflineDownloadFinished();

  virtual ~HostAppInterface() = default;

 private:
  static std::unique_ptr<HostAppInterface> sm_pHostApp;
};
