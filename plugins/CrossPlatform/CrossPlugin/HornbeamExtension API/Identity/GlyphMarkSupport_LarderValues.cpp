#include <array>
#include <cstdlib>
#include <string>

#include "Activation/Vocabulary/FontRecord.h"
#include "Activation/Vocabulary/FontRecordKeys.h"
#include "FontManagerInterface/FontManagerInterface.h"
#include "Identity/GlyphMarkSupport.h"
#include "Identity/MutableRecords.h"
#include "Memory/CFVector.h"
#include "Utilities/DebugUtils.h"
#include "XCFUtils.h"

namespace {

// No real kerning checksum is as large.
constexpr long long kKerningChecksumLimit = 0x100000;

struct KindMapping {
  CFStringRef stored;
  CFStringRef becomes;
};

bool EqualsIgnoringCase(CFStringRef a, CFStringRef b) {
  return CFStringCompare(a, b, kCFCompareCaseInsensitive) == kCFCompareEqualTo;
}

bool SetIfDifferent(CFMutableDictionaryRef font, CFStringRef key, CFStringRef newValue) {
  CFStringRef oldValue = XCFUtils::GetCFStringFromDict(font, key);
  if (!oldValue || !newValue || CFEqual(oldValue, newValue)) return false;
  CFDictionarySetValue(font, key, newValue);
  return true;
}

bool IsEmptyChecksum(const std::string& checksum) {
  return checksum.empty() || checksum == "0";
}

bool FixMissingChecksum(CFMutableDictionaryRef font) {
  const std::string checksum12 = XCFUtils::GetStringFromDict(font, kGM_GlyphMark_1_2_Key);
  if (IsEmptyChecksum(checksum12)) return false;
  if (!IsEmptyChecksum(XCFUtils::GetStringFromDict(font, kGM_ChecksumKey))) return false;
  XCFUtils::PutStringIntoDict(font, kGM_ChecksumKey, checksum12);
  return true;
}

bool FixKerningChecksum(CFMutableDictionaryRef font) {
  CFStringRef value = XCFUtils::GetCFStringFromDict(font, kGM_KerningChecksumKey);
  if (!value) return false;
  const long long checksum = std::strtoll(ToStdString(value).c_str(), nullptr, 10);
  if (checksum >= 0 && checksum < kKerningChecksumLimit) return false;
  CFDictionarySetValue(font, kGM_KerningChecksumKey, CFSTR("0"));
  return true;
}

}  // namespace

CFStringRef GlyphMarkSupport::MapLarderFontTypeToHornbeamFontType(CFStringRef kind, ExtentOfMapping extent) {
  static const std::array<KindMapping, 5> mappings = {{
      {CFSTR("PS Pair"), kGM_Kind_Postscript},
      {CFSTR("PS MM"), CFSTR("PostScript - MM")},
      {CFSTR("OpenType (TT)"), CFSTR("OpenType - TT")},
      {CFSTR("OpenType (PS)"), CFSTR("OpenType - PS")},
      {CFSTR("DFont"), kGM_Kind_TrueType},
  }};
  if (!kind || extent != ExtentOfMapping::kFull) return kind;
  for (const KindMapping& mapping : mappings) {
    if (EqualsIgnoringCase(kind, mapping.stored)) return mapping.becomes;
  }
  return kind;
}

bool GlyphMarkSupport::MapLarderFontTypeToHornbeamFontType(CFMutableDictionaryRef font,
                                                           ExtentOfMapping extent) {
  CFStringRef kind = XCFUtils::GetCFStringFromDict(font, kGM_KindKey);
  return SetIfDifferent(font, kGM_KindKey, MapLarderFontTypeToHornbeamFontType(kind, extent));
}

CFStringRef GlyphMarkSupport::CreateLarderFoundryNameFromHornbeamFoundryName(CFStringRef name) {
  if (!name) return nullptr;
  RetainPtr<CFMutableStringRef> copy = adoptCF(CFStringCreateMutableCopy(nullptr, 0, name));
  CFStringLowercase(copy.get(), nullptr);
  if (CFEqual(copy.get(), CFSTR("unknown"))) return CFStringCreateCopy(nullptr, CFSTR("--"));
  if (!CFEqual(copy.get(), name)) return CFStringCreateCopy(nullptr, name);
  CFStringCapitalize(copy.get(), nullptr);
  return CFStringCreateCopy(nullptr, copy.get());
}

bool GlyphMarkSupport::MapLarderFoundryNameToHornbeamFoundryName(CFMutableDictionaryRef font) {
  CFStringRef foundry = XCFUtils::GetCFStringFromDict(font, kGM_FoundryKey);
  const RetainPtr<CFStringRef> mapped = adoptCF(CreateLarderFoundryNameFromHornbeamFoundryName(foundry));
  return SetIfDifferent(font, kGM_FoundryKey, mapped.get());
}

bool GlyphMarkSupport::FixGlyphMarkChecksumsIfNeeded(CFMutableDictionaryRef font) {
  if (!font) return false;
  const bool fixedChecksum = FixMissingChecksum(font);
  const bool fixedKerning = FixKerningChecksum(font);
  return fixedChecksum || fixedKerning;
}

bool GlyphMarkSupport::PostProcessSingleFontForSlug(CFMutableDictionaryRef font) {
  if (!font || !FontManagerInterface::GetFontManager()) return false;
  const bool kindChanged = MapLarderFontTypeToHornbeamFontType(font, ExtentOfMapping::kFull);
  const bool foundryChanged = MapLarderFoundryNameToHornbeamFoundryName(font);
  const bool checksumsChanged = FixGlyphMarkChecksumsIfNeeded(font);
  return kindChanged || foundryChanged || checksumsChanged;
}

void GlyphMarkSupport::PostProcessGlyphMarkSlug(CFMutableArrayRef fonts) {
  const CFIndex count = FontRecord::Count(fonts);
  for (CFIndex i = 0; i < count; ++i) {
    if (PostProcessSingleFontForSlug(MutableRecords::At(fonts, i))) {
      OutputIndentedAndFormattedString(0, "Entry %d modified by PostProcessSingleFontForSlug()",
                                       static_cast<int>(i));
    }
  }
}
