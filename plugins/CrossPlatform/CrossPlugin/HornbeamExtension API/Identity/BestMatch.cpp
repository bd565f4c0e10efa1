#include "Identity/BestMatch.h"

#include <string>

#include "Activation/Vocabulary/FontRecord.h"
#include "Activation/Vocabulary/FontRecordKeys.h"
#include "CoreAgentInterface/Shuttle/ShuttleLoader.h"
#include "Identity/DecimalPrefix.h"
#include "Identity/GlyphMarkSupport.h"
#include "Memory/CFVector.h"
#include "Utilities/DebugUtils.h"
#include "XCFUtils.h"

namespace {

constexpr int kFirst = -1;
constexpr int kSecond = 1;
constexpr int kTie = 0;

int Prefer(bool first, bool second) {
  if (first == second) return kTie;
  return first ? kFirst : kSecond;
}

bool IsSet(CFDictionaryRef font, CFStringRef key) {
  return XCFUtils::GetBoolFromDictString(font, key);
}

// An active font that isn't the system's beats the system's: the user has overridden that one.
int CompareActiveState(CFDictionaryRef font1, CFDictionaryRef font2) {
  const bool active1 = IsSet(font1, kGM_IsActiveKey);
  const bool active2 = IsSet(font2, kGM_IsActiveKey);
  if (!active1 || !active2) return Prefer(active1, active2);
  OutputIndentedAndFormattedString(0, "...Two active fonts - one must be a system font.");
  if (!IsSet(font1, kGM_IsSystemKey)) return kFirst;
  return IsSet(font2, kGM_IsSystemKey) ? kTie : kSecond;
}

int CompareLiveState(CFDictionaryRef font1, CFDictionaryRef font2) {
  const unsigned int fontIDs[2] = {FontRecord::GetDatabaseID(font1), FontRecord::GetDatabaseID(font2)};
  if (fontIDs[0] == 0 || fontIDs[1] == 0) return kTie;
  int states[2] = {0, 0};
  if (ShuttleLoader::GetSharedInstance()->GetFontIsActivated(2ul, fontIDs, states) != 0) return kTie;
  return Prefer(states[0] != 0, states[1] != 0);
}

bool IsPostscript(CFDictionaryRef font) {
  return GlyphMarkSupport::KeyValueIs(font, kGM_KindKey, kGM_Kind_Postscript);
}

bool IsTrueType(CFDictionaryRef font) {
  return GlyphMarkSupport::KeyValueIs(font, kGM_KindKey, kGM_Kind_TrueType);
}

int CompareKindRanking(CFDictionaryRef font1, CFDictionaryRef font2) {
  const bool openType1 = KeyValueContains(font1, kGM_KindKey, kGM_Kind_OpenType);
  const bool openType2 = KeyValueContains(font2, kGM_KindKey, kGM_Kind_OpenType);
  if (openType1 && (IsPostscript(font2) || IsTrueType(font2))) return kFirst;
  if (openType2 && (IsPostscript(font1) || IsTrueType(font1))) return kSecond;
  if (IsPostscript(font1) && IsTrueType(font2)) return kFirst;
  if (IsPostscript(font2) && IsTrueType(font1)) return kSecond;
  return kTie;
}

bool IsAdobes(CFDictionaryRef font) {
  CFStringRef foundry = XCFUtils::GetCFStringFromDict(font, kGM_FoundryKey);
  return foundry && CFStringFind(foundry, CFSTR("Adobe"), 0).location != kCFNotFound;
}

// Two plain numbers: the greater is better. Otherwise the text decides, and there the smaller comes first.
int CompareVersions(CFDictionaryRef font1, CFDictionaryRef font2) {
  CFStringRef version1 = XCFUtils::GetCFStringFromDict(font1, kGM_VersionKey);
  CFStringRef version2 = XCFUtils::GetCFStringFromDict(font2, kGM_VersionKey);
  if (!version1 || !version2) return Prefer(version1 != nullptr, version2 != nullptr);
  const double number1 = ReadDecimalPrefix(ToStdString(version1));
  const double number2 = ReadDecimalPrefix(ToStdString(version2));
  if (number1 != 0.0 && number2 != 0.0) return Prefer(number1 > number2, number2 > number1);
  return static_cast<int>(CFStringCompare(version1, version2, kCFCompareNumerically));
}

// A font that doesn't tell takes no part.
int CompareFlag(CFDictionaryRef font1, CFDictionaryRef font2, CFStringRef key) {
  using GlyphMarkSupport::KeyValueIs;
  const bool first = KeyValueIs(font1, key, CFSTR("1")) && KeyValueIs(font2, key, CFSTR("0"));
  const bool second = KeyValueIs(font2, key, CFSTR("1")) && KeyValueIs(font1, key, CFSTR("0"));
  return Prefer(first, second);
}

}  // namespace

BestMatchDecision DecideBestMatch(CFDictionaryRef font1, CFDictionaryRef font2, CFDictionaryRef request) {
  using Test = EBestMatchTest;
  if (const int result = CompareActiveState(font1, font2)) return {result, Test::kActiveState};
  if (const int result = CompareLiveState(font1, font2)) return {result, Test::kLiveState};
  if (const int result = KeyValueStringMatch(request, font1, font2, kGM_KindKey)) {
    return {result, Test::kRequestedKind};
  }
  if (const int result = KeyValueStringMatch(request, font1, font2, kGM_FoundryKey)) {
    return {result, Test::kRequestedFoundry};
  }
  if (const int result = CompareKindRanking(font1, font2)) return {result, Test::kKindRanking};
  if (const int result = Prefer(IsAdobes(font1), IsAdobes(font2))) return {result, Test::kAdobeFoundry};
  if (const int result = CompareVersions(font1, font2)) return {result, Test::kVersion};
  if (const int result = CompareFlag(font1, font2, kGM_IsTempKey)) return {result, Test::kTemporary};
  if (const int result = CompareFlag(font1, font2, kGM_IsVaultKey)) return {result, Test::kVault};
  return {};
}

CFComparisonResult PickBestMatchCallBack(const void* fontRef1, const void* fontRef2, void* context) {
  const int result =
      DecideBestMatch(dynamicCF<CFDictionaryRef>(fontRef1), dynamicCF<CFDictionaryRef>(fontRef2),
                      dynamicCF<CFDictionaryRef>(context))
          .result;
  if (result != kTie) OutputIndentedAndFormattedString(0, "PickBestMatchCallBack returning %d.", result);
  return static_cast<CFComparisonResult>(result);
}

bool GlyphMarkSupport::KeyValueIs(CFDictionaryRef dict, CFStringRef key, CFStringRef value) {
  if (!dict || !key || !value) return false;
  CFStringRef stored = XCFUtils::GetCFStringFromDict(dict, key);
  return stored && CFStringGetLength(stored) == CFStringGetLength(value) &&
         CFStringCompare(stored, value, kCFCompareCaseInsensitive) == kCFCompareEqualTo;
}

bool KeyValueContains(CFDictionaryRef dict, CFStringRef key, CFStringRef value) {
  if (!dict || !key || !value) return false;
  CFStringRef stored = XCFUtils::GetCFStringFromDict(dict, key);
  if (!stored || CFStringGetLength(stored) < CFStringGetLength(value)) return false;
  return CFStringFind(stored, value, kCFCompareCaseInsensitive).location != kCFNotFound;
}

int KeyValueStringMatch(CFDictionaryRef reference, CFDictionaryRef dict1, CFDictionaryRef dict2,
                        CFStringRef key) {
  if (!reference || !dict1 || !dict2 || !key) return kTie;
  CFStringRef wanted = XCFUtils::GetCFStringFromDict(reference, key);
  if (!wanted) return kTie;
  return Prefer(GlyphMarkSupport::KeyValueIs(dict1, key, wanted),
                GlyphMarkSupport::KeyValueIs(dict2, key, wanted));
}
