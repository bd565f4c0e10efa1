#include "HostAppInterface/GeneralInterface.h"

#include "Panel/PanelManager.h"

void GeneralInterface::SetRebuildWorkgroupsMenuCallback(RebuildWorkgroupsMenuCallback callback) {
  m_rebuildWorkgroupsMenu = callback;
}

void GeneralInterface::RebuildWorkgroupsMenu() {
  if (m_rebuildWorkgroupsMenu != nullptr) m_rebuildWorkgroupsMenu();
  PanelManager::GetSharedInstance()->CheckForTypekit();
}

void GeneralInterface::SetCanExportFontsForDocument(bool /*canExport*/) {}

bool GeneralInterface::CanExportFontsForDocument() {
  return false;
}

void GeneralInterface::SetMissingFontsDialogNeeded() {}

void GeneralInterface::FontActivated(unsigned int fontID) {
  m_activatedFonts.insert(fontID);
  PanelManager::GetSharedInstance()->PushFontActivatedNotification(fontID);
}

bool GeneralInterface::FontActivationRecognized(unsigned int fontID) {
  return m_activatedFonts.contains(fontID);
}

void GeneralInterface::FontDeactivated(unsigned int fontID) {
  m_activatedFonts.erase(fontID);
  PanelManager::GetSharedInstance()->PushFontDeactivatedNotification(fontID);
}
