#pragma once

#include "HostAppInterface/GeneralInterface.h"

/// The notification sink of the InDesign plug-in: every event goes to the panels as the push of its kind, and
/// nothing is kept here. So no activation counts as recognized.
///
/// The menus belong to the layer that is bound to the host, which this one doesn't know: that layer names the
/// function that builds the workgroups menu anew.
class InDesignInterface : public GeneralInterface {
 public:
  InDesignInterface();

  /// Null, as at first, leaves the menu alone. For the instance that there is and for those to come.
  static void SetMenuBuilder(RebuildWorkgroupsMenuCallback builder);

  void RebuildWorkgroupsMenu() override;
  void HandlePanelDataChanged() override;
  void SetLoggedInState(bool isLoggedIn, EServerType serverType) override;
  void SetIsOnline(bool isOnline) override;
  void FontActivated(unsigned int fontID) override;
  void DesignActivationFailedComplianceCheck(unsigned int fontID) override;
  void FontDeactivated(unsigned int fontID) override;
  void FontMissing(unsigned int fontID) override;
  void BulkReplicationProgress(CFDictionaryRef progress) override;
  void BulkReplicationStopped() override;
  void IncrementalReplicationProgress(CFDictionaryRef progress) override;
  void IncrementalReplicationStopped() override;
  void GoogleReplicationProgress(CFDictionaryRef progress) override;
  void GoogleReplicationStopped() override;
  void GoogleWebFontsEnabled(bool enabled) override;
  void FontServerReplicationProgress(CFDictionaryRef progress) override;
  void FontServerReplicationStopped() override;
  void PreviewPNGsRendered(CFDictionaryRef fontPNGs) override;
  void SmartListsChanged() override;
  void OfflineDownloadFinished() override;
};
