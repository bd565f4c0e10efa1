// Entries that this agent has no service for yet. They touch nothing.

#include "GErrorCodes.h"
#include "client/PluginInterface.h"

ErrCode AddFontsToSets(FacadeRef, unsigned long, const unsigned int*, unsigned long, const unsigned int*) {
  return CoreErrorCodes::kNotImplemented;
}

ErrCode CanExportFonts(FacadeRef, unsigned long, const unsigned int*, int*) {
  return CoreErrorCodes::kNotImplemented;
}

ErrCode CreateTopLevelSet(FacadeRef, int*, const char*, int, int, int, unsigned long, const unsigned int*) {
  return CoreErrorCodes::kNotImplemented;
}

ErrCode ExportFonts(FacadeRef, unsigned long, const unsigned int*, const char*, int, int) {
  return CoreErrorCodes::kNotImplemented;
}

ErrCode FindFontsInSameFamilyForActivation(CFDictionaryRef, const unsigned int*, unsigned long,
                                           CFMutableArrayRef) {
  return CoreErrorCodes::kNotImplemented;
}

ErrCode GetSystemWorkgroupID(FacadeRef, unsigned int*) {
  return CoreErrorCodes::kNotImplemented;
}

ErrCode IsAllWorkgroups(FacadeRef, int, int*) {
  return CoreErrorCodes::kNotImplemented;
}

ErrCode GetGoogleFonts(FacadeRef, CFMutableArrayRef) {
  return CoreErrorCodes::kNotImplemented;
}

ErrCode GetIsReplicationRunning(FacadeRef, int*) {
  return CoreErrorCodes::kNotImplemented;
}

ErrCode GetCurrentReplicationMode(FacadeRef, int*) {
  return CoreErrorCodes::kNotImplemented;
}

ErrCode SetGoogleWebFontsEnabled(FacadeRef, int) {
  return CoreErrorCodes::kNotImplemented;
}

ErrCode GetRenderedPNGsDirectory(FacadeRef, char*, unsigned long) {
  return CoreErrorCodes::kNotImplemented;
}

ErrCode RenderFontNamePreviewPNGs(FacadeRef, unsigned long, const unsigned int*, unsigned long,
                                  const unsigned int*, unsigned int, int, int, int, int) {
  return CoreErrorCodes::kNotImplemented;
}

ErrCode RenameSmartList(FacadeRef, unsigned int, const char*) {
  return CoreErrorCodes::kNotImplemented;
}

ErrCode DeleteSmartList(FacadeRef, unsigned int) {
  return CoreErrorCodes::kNotImplemented;
}

ErrCode GetSmartList(FacadeRef, unsigned int, CFMutableDictionaryRef) {
  return CoreErrorCodes::kNotImplemented;
}

ErrCode GetPanelSmartListTree(FacadeRef, unsigned int, CFMutableStringRef) {
  return CoreErrorCodes::kNotImplemented;
}

ErrCode QueryForSmartListFonts(FacadeRef, unsigned long, const unsigned int*, unsigned long,
                               const unsigned int*, unsigned long, const unsigned int*, CFMutableArrayRef) {
  return CoreErrorCodes::kNotImplemented;
}

ErrCode GetAllSmartLists(FacadeRef, CFMutableArrayRef) {
  return CoreErrorCodes::kNotImplemented;
}

ErrCode CreateSmartList(FacadeRef, const char*, unsigned long, const unsigned int*, unsigned long,
                        const unsigned int*, unsigned long, const unsigned int*, unsigned int*) {
  return CoreErrorCodes::kNotImplemented;
}

ErrCode SetSmartListQuery(FacadeRef, unsigned int, unsigned long, const unsigned int*, unsigned long,
                          const unsigned int*, unsigned long, const unsigned int*) {
  return CoreErrorCodes::kNotImplemented;
}

ErrCode GetSmartListFonts(FacadeRef, unsigned int, CFMutableArrayRef) {
  return CoreErrorCodes::kNotImplemented;
}

ErrCode GetFontConflicts(FacadeRef, unsigned long, const unsigned int*, unsigned int*) {
  return CoreErrorCodes::kNotImplemented;
}

ErrCode TrackFontPanelClick(FacadeRef, unsigned int, const char*) {
  return CoreErrorCodes::kNotImplemented;
}

int CanAccessGoogleFonts(FacadeRef) {
  return 0;
}

ErrCode GetFontUsage(FacadeRef, const char*, CFMutableArrayRef) {
  return CoreErrorCodes::kNotImplemented;
}

ErrCode GetAdobeXMPData(FacadeRef, const char*, CFMutableArrayRef) {
  return CoreErrorCodes::kNotImplemented;
}

ErrCode GetGlyphMarkXMPData(FacadeRef, const char*, CFMutableArrayRef) {
  return CoreErrorCodes::kNotImplemented;
}

ErrCode WriteFontUsage(FacadeRef, const char*, CFArrayRef) {
  return CoreErrorCodes::kNotImplemented;
}
