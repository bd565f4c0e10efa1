#include "HostAppInterface/HostAppInterface.h"

#include <utility>

#include "HostAppInterface/InDesignInterface.h"

std::unique_ptr<HostAppInterface> HostAppInterface::sm_pHostApp;

HostAppInterface* HostAppInterface::GetHostAppInterface() {
  if (sm_pHostApp == nullptr) sm_pHostApp = std::make_unique<InDesignInterface>();
  return sm_pHostApp.get();
}

std::unique_ptr<HostAppInterface> HostAppInterface::ReplaceForTesting(
    std::unique_ptr<HostAppInterface> instance) {
  return std::exchange(sm_pHostApp, std::move(instance));
}

void HostAppInterface::HandlePanelDataChanged() {}
void HostAppInterface::SetCanExportFontsForDocument(bool /*canExport*/) {}
bool HostAppInterface::CanExportFontsForDocument() {
  return false;
}
void HostAppInterface::SetMissingFontsDialogNeeded() {}
void HostAppInterface::SetLoggedInState(bool /*isLoggedIn*/, EServerType /*serverType*/) {}
void HostAppInterface::SetIsOnline(bool /*isOnline*/) {}
void HostAppInterface::FontActivated(unsigned int /*fontID*/) {}
bool HostAppInterface::FontActivationRecognized(unsigned int /*fontID*/) {
  return true;
}
void HostAppInterface::DesignActivationFailedComplianceCheck(unsigned int /*fontID*/) {}
void HostAppInterface::FontDeactivated(unsigned int /*fontID*/) {}
void HostAppInterface::FontMissing(unsigned int /*fontID*/) {}
void HostAppInterface::BulkReplicationProgress(CFDictionaryRef /*progress*/) {}
void HostAppInterface::BulkReplicationStopped() {}
void HostAppInterface::IncrementalReplicationProgress(CFDictionaryRef /*progress*/) {}
void HostAppInterface::IncrementalReplicationStopped() {}
void HostAppInterface::PrismletReplicationProgress(CFDictionaryRef /*progress*/) {}
void HostAppInterface::PrismletReplicationStopped() {}
void HostAppInterface::GoogleReplicationProgress(CFDictionaryRef /*progress*/) {}
void HostAppInterface::GoogleReplicationStopped() {}
void HostAppInterface::GoogleWebFontsEnabled(bool /*enabled*/) {}
void HostAppInterface::FontServerReplicationProgress(CFDictionaryRef /*progress*/) {}
void HostAppInterface::FontServerReplicationStopped() {}
void HostAppInterface::PreviewPNGsRendered(CFDictionaryRef /*fontPNGs*/) {}
void HostAppInterface::SmartListsChanged() {}
void HostAppInterface::OfflineDownloadFinished() {}
