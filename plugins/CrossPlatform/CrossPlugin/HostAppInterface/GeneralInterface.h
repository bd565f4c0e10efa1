#pragma once

#include <set>

#include "HostAppInterface/HostAppInterface.h"

/// What is the same in every host: the account of activated fonts, and the workgroups menu, which the host's
/// own side builds.
class GeneralInterface : public HostAppInterface {
 public:
  using RebuildWorkgroupsMenuCallback = void (*)();

  /// Null, as at first, leaves the menu alone.
  void SetRebuildWorkgroupsMenuCallback(RebuildWorkgroupsMenuCallback callback);

  /// Has the menu built anew, and the panels look for the Typekit library.
  void RebuildWorkgroupsMenu() override;

  // Neither flag is kept here: they belong to a document.
  void SetCanExportFontsForDocument(bool canExport) override;
  bool CanExportFontsForDocument() override;
  void SetMissingFontsDialogNeeded() override;

  /// Keeps account of the font and tells the panels.
  void FontActivated(unsigned int fontID) override;
  bool FontActivationRecognized(unsigned int fontID) override;
  void FontDeactivated(unsigned int fontID) override;

 private:
  std::set<unsigned int> m_activatedFonts;
  RebuildWorkgroupsMenuCallback m_rebuildWorkgroupsMenu = nullptr;
};
