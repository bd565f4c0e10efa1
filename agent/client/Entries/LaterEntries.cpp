// Entries that this agent has no service for yet. They touch nothing.

#include "GErrorCodes.h"
#include "client/PluginInterface.h"

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

ErrCode TrackFontPanelClick(FacadeRef, unsigned int, const char*) {
  return CoreErrorCodes::kNotImplemented;
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
