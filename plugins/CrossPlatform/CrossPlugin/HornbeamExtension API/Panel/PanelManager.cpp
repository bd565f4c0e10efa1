#include "Panel/PanelManager.h"

#include <algorithm>
#include <utility>

#include "GErrors.h"
#include "Panel/HornbeamPanel.h"
#include "Utilities/ScopedFlag.h"

namespace {

const char* const kIdentifier = "Miscellaneous";

}  // namespace

// The body of an operation: a macro, because a failure is logged with the text of the panel's call.
#define CALL_EACH_PANEL(call)                                                  \
  for (auto it = mPanels.begin(); it != mPanels.end(); ++it) {                 \
    const TErrCode status = GCHECK((*it)->call, kIdentifier, GLogger::eError); \
    if (status != 0) return status;                                            \
  }                                                                            \
  return 0

PanelManager::PanelManager() = default;
PanelManager::~PanelManager() = default;

void PanelManager::AddPanel(std::unique_ptr<HornbeamPanel> panel) {
  if (panel != nullptr) mPanels.insert(std::move(panel));
}

std::unique_ptr<HornbeamPanel> PanelManager::RemovePanel(HornbeamPanel* panel) {
  const auto found = std::find_if(mPanels.begin(), mPanels.end(),
                                  [panel](const auto& candidate) { return candidate.get() == panel; });
  if (found == mPanels.end()) return nullptr;
  return std::move(mPanels.extract(found).value());
}

TErrCode PanelManager::OpenSocket() {
  CALL_EACH_PANEL(OpenSocket());
}

TErrCode PanelManager::SelectSocket(bool closeListeningSocket) {
  CALL_EACH_PANEL(SelectSocket(closeListeningSocket));
}

unsigned int PanelManager::GetSocketPort() const {
  for (const auto& panel : mPanels) {
    if (const unsigned int port = panel->GetSocketPort()) return port;
  }
  return 0;
}

TErrCode PanelManager::SetEnabled(bool enabled) {
  CALL_EACH_PANEL(SetEnabled(enabled));
}

TErrCode PanelManager::PopNotifications() {
  if (mIsPopping) return 0;
  const ScopedFlag popping(mIsPopping);
  CALL_EACH_PANEL(PopNotifications());
}

TErrCode PanelManager::PushLoggedInStateChangedNotification(EServerType serverType) {
  CALL_EACH_PANEL(PushLoggedInStateChangedNotification(serverType));
}

TErrCode PanelManager::PushOnlineStateChangedNotification(bool isOnline) {
  CALL_EACH_PANEL(PushOnlineStateChangedNotification(isOnline));
}

TErrCode PanelManager::PushGoogleWebFontsEnabledNotificaton(bool enabled) {
  CALL_EACH_PANEL(PushGoogleWebFontsEnabledNotificaton(enabled));
}

TErrCode PanelManager::PushFontActivatedNotification(unsigned int fontID) {
  CALL_EACH_PANEL(PushFontActivatedNotification(fontID));
}

TErrCode PanelManager::PushFontDeactivatedNotification(unsigned int fontID) {
  CALL_EACH_PANEL(PushFontDeactivatedNotification(fontID));
}

TErrCode PanelManager::PushFontMissingNotification(unsigned int fontID) {
  CALL_EACH_PANEL(PushFontMissingNotification(fontID));
}

TErrCode PanelManager::PushFontNonCompliantNotification(unsigned int fontID) {
  CALL_EACH_PANEL(PushFontNonCompliantNotification(fontID));
}

TErrCode PanelManager::PushBulkReplicationProgressNotification(CFDictionaryRef progress) {
  CALL_EACH_PANEL(PushBulkReplicationProgressNotification(progress));
}

TErrCode PanelManager::PushBulkReplicationStoppedNotification() {
  CALL_EACH_PANEL(PushBulkReplicationStoppedNotification());
}

TErrCode PanelManager::PushIncrementalReplicationProgressNotification(CFDictionaryRef progress) {
  CALL_EACH_PANEL(PushIncrementalReplicationProgressNotification(progress));
}

TErrCode PanelManager::PushIncrementalReplicationStoppedNotification() {
  CALL_EACH_PANEL(PushIncrementalReplicationStoppedNotification());
}

TErrCode PanelManager::PushGoogleReplicationProgressNotification(CFDictionaryRef progress) {
  CALL_EACH_PANEL(PushGoogleReplicationProgressNotification(progress));
}

TErrCode PanelManager::PushGoogleReplicationStoppedNotification() {
  CALL_EACH_PANEL(PushGoogleReplicationStoppedNotification());
}

TErrCode PanelManager::PushFontServerReplicationProgressNotification(CFDictionaryRef progress) {
  CALL_EACH_PANEL(PushFontServerReplicationProgressNotification(progress));
}

TErrCode PanelManager::PushFontServerReplicationStoppedNotification() {
  CALL_EACH_PANEL(PushFontServerReplicationStoppedNotification());
}

TErrCode PanelManager::PushDataChangedNotification() {
  CALL_EACH_PANEL(PushDataChangedNotification());
}

TErrCode PanelManager::PushSmartListsChangedNotification() {
  CALL_EACH_PANEL(PushSmartListsChangedNotification());
}

TErrCode PanelManager::PushOfflineDownloadFinishedNotification() {
  CALL_EACH_PANEL(PushOfflineDownloadFinishedNotification());
}

TErrCode PanelManager::SendFontImages(CFDictionaryRef fontPNGs) {
  CALL_EACH_PANEL(SendFontImages(fontPNGs));
}

void PanelManager::CheckForTypekit() {
  for (const auto& panel : mPanels) panel->CheckForTypekit();
}

#undef CALL_EACH_PANEL
