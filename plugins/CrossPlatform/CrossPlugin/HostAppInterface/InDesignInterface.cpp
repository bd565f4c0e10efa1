#include "HostAppInterface/InDesignInterface.h"

#include "Panel/PanelManager.h"

namespace {

GeneralInterface::RebuildWorkgroupsMenuCallback sMenuBuilder = nullptr;

PanelManager& Panels() {
  return *PanelManager::GetSharedInstance();
}

}  // namespace

InDesignInterface::InDesignInterface() {
  SetRebuildWorkgroupsMenuCallback([] {
    if (sMenuBuilder != nullptr) sMenuBuilder();
  });
}

void InDesignInterface::SetMenuBuilder(RebuildWorkgroupsMenuCallback builder) {
  sMenuBuilder = builder;
}

void InDesignInterface::RebuildWorkgroupsMenu() {
  GeneralInterface::RebuildWorkgroupsMenu();
}

void InDesignInterface::HandlePanelDataChanged() {
  Panels().PushDataChangedNotification();
}

void InDesignInterface::SetLoggedInState(bool /*isLoggedIn*/, EServerType serverType) {
  Panels().PushLoggedInStateChangedNotification(serverType);
}

void InDesignInterface::SetIsOnline(bool isOnline) {
  Panels().PushOnlineStateChangedNotification(isOnline);
}

void InDesignInterface::FontActivated(unsigned int fontID) {
  Panels().PushFontActivatedNotification(fontID);
}

void InDesignInterface::DesignActivationFailedComplianceCheck(unsigned int fontID) {
  Panels().PushFontNonCompliantNotification(fontID);
}

void InDesignInterface::FontDeactivated(unsigned int fontID) {
  Panels().PushFontDeactivatedNotification(fontID);
}

void InDesignInterface::FontMissing(unsigned int fontID) {
  Panels().PushFontMissingNotification(fontID);
}

void InDesignInterface::BulkReplicationProgress(CFDictionaryRef progress) {
  Panels().PushBulkReplicationProgressNotification(progress);
}

void InDesignInterface::BulkReplicationStopped() {
  Panels().PushBulkReplicationStoppedNotification();
}

void InDesignInterface::IncrementalReplicationProgress(CFDictionaryRef progress) {
  Panels().PushIncrementalReplicationProgressNotification(progress);
}

void InDesignInterface::IncrementalReplicationStopped() {
  Panels().PushIncrementalReplicationStoppedNotification();
}

void InDesignInterface::GoogleReplicationProgress(CFDictionaryRef progress) {
  Panels().PushGoogleReplicationProgressNotification(progress);
}

void InDesignInterface::GoogleReplicationStopped() {
  Panels().PushGoogleReplicationStoppedNotification();
}

void InDesignInterface::GoogleWebFontsEnabled(bool enabled) {
  Panels().PushGoogleWebFontsEnabledNotificaton(enabled);
}

void InDesignInterface::FontServerReplicationProgress(CFDictionaryRef progress) {
  Panels().PushFontServerReplicationProgressNotification(progress);
}

void InDesignInterface::FontServerReplicationStopped() {
  Panels().PushFontServerReplicationStoppedNotification();
}

void InDesignInterface::PreviewPNGsRendered(CFDictionaryRef fontPNGs) {
  Panels().SendFontImages(fontPNGs);
}

void InDesignInterface::SmartListsChanged() {
  Panels().PushSmartListsChangedNotification();
}

void InDesignInterface::OfflineDownloadFinished() {
  Panels().PushOfflineDownloadFinishedNotification();
}
