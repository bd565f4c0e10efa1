#include "client/FontRecords.h"

#include <string>
#include <vector>

#include "Memory/CFVector.h"
#include "XCFUtils.h"
#include "client/RecordKeys.h"

using kiln::wire::FontIdentity;
using XCFUtils::PutBoolIntoDictAsString;
using XCFUtils::PutStringIntoDict;
using XCFUtils::PutULongIntoDictAsString;

namespace {

const char* KindText(kiln::wire::FontKind kind) {
  switch (kind) {
    case kiln::wire::FONT_KIND_OPENTYPE:
      return "OpenType";
    case kiln::wire::FONT_KIND_POSTSCRIPT:
      return "Postscript";
    case kiln::wire::FONT_KIND_TRUETYPE:
      return "TrueType";
    default:
      return "";
  }
}

kiln::wire::FontKind KindOf(const std::string& text) {
  for (const auto kind :
       {kiln::wire::FONT_KIND_OPENTYPE, kiln::wire::FONT_KIND_POSTSCRIPT, kiln::wire::FONT_KIND_TRUETYPE}) {
    if (text == KindText(kind)) return kind;
  }
  return kiln::wire::FONT_KIND_UNKNOWN;
}

bool IsTemporary(kiln::wire::ActivationState state) {
  return (state >= kiln::wire::ACTIVATION_AUTO && state <= kiln::wire::ACTIVATION_TEMPORARY) ||
         state == kiln::wire::ACTIVATION_PREVIEW || state == kiln::wire::ACTIVATION_TEMPORARY_OVER_CONFLICT;
}

void PutKnownText(CFMutableDictionaryRef record, CFStringRef key, const std::string& text) {
  if (!text.empty()) PutStringIntoDict(record, key, text);
}

void PutKnownNumber(CFMutableDictionaryRef record, CFStringRef key, unsigned long number) {
  if (number != 0) PutULongIntoDictAsString(record, key, number);
}

std::string Text(CFDictionaryRef record, CFStringRef key) {
  return XCFUtils::GetStringFromDict(record, key);
}

uint32_t Number32(CFDictionaryRef record, CFStringRef key) {
  return static_cast<uint32_t>(XCFUtils::GetULongFromDictString(record, key));
}

}  // namespace

RetainPtr<CFMutableDictionaryRef> FontRecords::MakeRecord(const kiln::wire::Font& font) {
  auto made = MakeDictionary();
  CFMutableDictionaryRef record = made.get();
  PutStringIntoDict(record, RecordKeys::kPostScriptName, font.postscript_name());
  PutKnownText(record, RecordKeys::kKind, KindText(font.kind()));
  PutKnownText(record, RecordKeys::kFoundry, font.foundry());
  PutKnownText(record, RecordKeys::kVersion, font.version());
  PutKnownNumber(record, RecordKeys::kKerningChecksum, font.kerning_checksum());
  PutKnownNumber(record, RecordKeys::kChecksum, font.checksum());
  PutKnownNumber(record, RecordKeys::kGlyphMark12Checksum, font.glyphmark_checksum());
  PutKnownNumber(record, RecordKeys::kOutlineFileSize, font.outline_file_size());
  PutKnownText(record, RecordKeys::kOutlineFileName, font.outline_file_name());
  PutKnownText(record, RecordKeys::kFamily, font.family());
  PutKnownText(record, RecordKeys::kStyle, font.style());
  PutKnownText(record, RecordKeys::kDisplayName, font.display_name());
  PutKnownNumber(record, RecordKeys::kAssignedFamilyID, font.family_group_id());
  PutKnownText(record, RecordKeys::kAssignedFamilyName, font.family_group_name());
  PutKnownText(record, RecordKeys::kPath, font.path());
  PutKnownText(record, RecordKeys::kLocation, font.link_path());
  PutULongIntoDictAsString(record, RecordKeys::kDatabaseID, font.id());
  PutULongIntoDictAsString(record, RecordKeys::kActivationStatus, static_cast<unsigned long>(font.state()));
  PutULongIntoDictAsString(record, RecordKeys::kWorkgroupID, font.workgroup_id());
  PutKnownText(record, RecordKeys::kWorkgroupName, font.workgroup_name());
  PutULongIntoDictAsString(record, RecordKeys::kWorkgroupType,
                           static_cast<unsigned long>(font.workgroup_type()));
  PutBoolIntoDictAsString(record, RecordKeys::kIsVault, font.in_vault());
  PutBoolIntoDictAsString(record, RecordKeys::kIsSystem, font.is_system());
  PutBoolIntoDictAsString(record, RecordKeys::kIsLocal, font.state() != kiln::wire::ACTIVATION_MISSING);
  return made;
}

bool FontRecords::IsActive(kiln::wire::ActivationState state) {
  return IsTemporary(state) ||
         (state >= kiln::wire::ACTIVATION_PERMANENT && state <= kiln::wire::ACTIVATION_REQUIRED) ||
         state == kiln::wire::ACTIVATION_OVER_CONFLICT;
}

void FontRecords::PutMeaningOfState(CFMutableDictionaryRef record, kiln::wire::ActivationState state) {
  PutBoolIntoDictAsString(record, RecordKeys::kIsTemp, IsTemporary(state));
  PutBoolIntoDictAsString(record, RecordKeys::kIsActive, IsActive(state));
  PutBoolIntoDictAsString(record, RecordKeys::kIsAutoActivated,
                          state == kiln::wire::ACTIVATION_AUTO || state == kiln::wire::ACTIVATION_AUTO_LOCAL);
}

std::optional<FontIdentity> FontRecords::ReadIdentity(CFDictionaryRef record) {
  FontIdentity identity;
  identity.set_postscript_name(Text(record, RecordKeys::kPostScriptName));
  if (identity.postscript_name().empty()) return std::nullopt;
  identity.set_kind(KindOf(Text(record, RecordKeys::kKind)));
  identity.set_foundry(Text(record, RecordKeys::kFoundry));
  identity.set_version(Text(record, RecordKeys::kVersion));
  identity.set_kerning_checksum(Number32(record, RecordKeys::kKerningChecksum));
  identity.set_checksum(Number32(record, RecordKeys::kChecksum));
  identity.set_glyphmark_checksum(Number32(record, RecordKeys::kGlyphMark12Checksum));
  identity.set_outline_file_size(XCFUtils::GetULongFromDictString(record, RecordKeys::kOutlineFileSize));
  identity.set_outline_file_name(Text(record, RecordKeys::kOutlineFileName));
  identity.set_family(Text(record, RecordKeys::kFamily));
  return identity;
}

RetainPtr<CFMutableArrayRef> FontRecords::MakeIDList(const google::protobuf::RepeatedField<uint32_t>& ids) {
  std::vector<std::string> texts;
  for (const uint32_t id : ids) texts.push_back(std::to_string(id));
  return ToCFArray(texts);
}

RetainPtr<CFMutableDictionaryRef> FontRecords::MakeWorkgroupRecord(const kiln::wire::Workgroup& workgroup) {
  auto record = MakeDictionary();
  PutULongIntoDictAsString(record.get(), RecordKeys::kWorkgroupID, workgroup.id());
  PutStringIntoDict(record.get(), RecordKeys::kWorkgroupName, workgroup.name());
  PutULongIntoDictAsString(record.get(), RecordKeys::kWorkgroupType,
                           static_cast<unsigned long>(workgroup.type()));
  return record;
}
