#include "Parsers/EPSAttributes.h"

#include "Activation/Vocabulary/FontRecordKeys.h"

namespace {

struct Attribute {
  const char* name;
  const CFStringRef& key;  // a constant of another source, which may be built later than this table
};

constexpr Attribute kAttributes[] = {
    {"NAME", kGM_PostScriptNameKey},
    {"FOUNDRY", kGM_FoundryKey},
    {"VERSION", kGM_VersionKey},
    {"KERNINGCHECKSUM", kGM_KerningChecksumKey},
    {"OUTLINEFILESIZE", kGM_OutlineFileSizeKey},
    {"KIND", kGM_KindKey},
    {"CHECKSUM", kGM_ChecksumKey},
    {"FAMILY", kGM_FamilyKey},
};

}  // namespace

CFStringRef EPSAttributes::GetKeyForAttributeName(const std::string& name) {
  for (const Attribute& attribute : kAttributes) {
    if (name == attribute.name) return attribute.key;
  }
  return nullptr;
}

bool EPSAttributes::OutputKeyForGlyphMarkKey(CFStringRef key, std::string& outName) {
  for (const Attribute& attribute : kAttributes) {
    if (!CFEqual(key, attribute.key)) continue;
    outName = attribute.name;
    return true;
  }
  return false;
}
