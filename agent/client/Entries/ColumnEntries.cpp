// The agent's internal names: of columns of its store as "table.column", of permissions as the agent asks
// them.

#include "client/Entries/EntryGuard.h"
#include "client/PluginInterface.h"
#include "protocol/PermissionColumns.h"

namespace {

ErrCode Fill(const char* name, char* buffer, unsigned long size) {
  return EntryGuard::Run([&] { return EntryGuard::FillBuffer(name, buffer, size); });
}

}  // namespace

ErrCode GetActivationStateColumnID(char* buffer, unsigned long size) {
  return Fill("activations.kind", buffer, size);
}

ErrCode GetCanActivateAcrossWorkgroupsColumnID(char* buffer, unsigned long size) {
  return Fill(kiln::kCanActivateAcrossWorkgroupsColumn, buffer, size);
}

ErrCode GetDefaultLibraryName(char* buffer, unsigned long size) {
  return Fill("Font Library (LOCALIZE ME)", buffer, size);
}

ErrCode GetExportFontsColumnID(char* buffer, unsigned long size) {
  return Fill(kiln::kExportFontsColumn, buffer, size);
}

ErrCode GetFamilyGroupIDColumnID(char* buffer, unsigned long size) {
  return Fill("fonts.family_group_id", buffer, size);
}

ErrCode GetFamilyGroupNameColumnID(char* buffer, unsigned long size) {
  return Fill("family_groups.name", buffer, size);
}

ErrCode GetFamilyNameColumnID(char* buffer, unsigned long size) {
  return Fill("fonts.family", buffer, size);
}

ErrCode GetFileSizeColumnID(char* buffer, unsigned long size) {
  return Fill("files.size", buffer, size);
}

ErrCode GetFontFaceIDColumnID(char* buffer, unsigned long size) {
  return Fill("fonts.id", buffer, size);
}

ErrCode GetFontLocationColumnID(char* buffer, unsigned long size) {
  return Fill("files.link", buffer, size);
}

ErrCode GetGlyphMarkChecksumColumnID(char* buffer, unsigned long size) {
  return Fill("fonts.glyphmark_checksum", buffer, size);
}

ErrCode GetFontTypeColumnID(char* buffer, unsigned long size) {
  return Fill("fonts.kind", buffer, size);
}

ErrCode GetFontVersionColumnID(char* buffer, unsigned long size) {
  return Fill("fonts.version", buffer, size);
}

ErrCode GetFoundryNameColumnID(char* buffer, unsigned long size) {
  return Fill("fonts.foundry", buffer, size);
}

ErrCode GetIsFontLocalColumnID(char* buffer, unsigned long size) {
  return Fill("files.missing", buffer, size);
}

ErrCode GetIsHornbeamFileColumnID(char* buffer, unsigned long size) {
  return Fill("files.hash", buffer, size);
}

ErrCode GetLegacyGlyphMarkChecksumColumnID(char* buffer, unsigned long size) {
  return Fill("files.checksum", buffer, size);
}

ErrCode GetLocalPathColumnID(char* buffer, unsigned long size) {
  return Fill("files.system_path", buffer, size);
}

ErrCode GetPostscriptNameColumnID(char* buffer, unsigned long size) {
  return Fill("fonts.postscript_name", buffer, size);
}

ErrCode GetDisplayNameColumnID(char* buffer, unsigned long size) {
  return Fill("fonts.display_name", buffer, size);
}

ErrCode GetScannedFoundryColumnID(char* buffer, unsigned long size) {
  return Fill("fonts.foundry", buffer, size);
}

ErrCode GetWorkgroupIDColumnID(char* buffer, unsigned long size) {
  return Fill("workgroups.id", buffer, size);
}

ErrCode GetWorkgroupNameColumnID(char* buffer, unsigned long size) {
  return Fill("workgroups.name", buffer, size);
}

ErrCode GetWorkgroupTypeColumnID(char* buffer, unsigned long size) {
  return Fill("workgroups.type", buffer, size);
}
