#include <unicode/uchar.h>
#include <unicode/ucol.h>
#include <unicode/ustring.h>

#include <algorithm>
#include <array>
#include <mutex>
#include <string_view>

#include "CoreFoundation/CFString.h"
#include "CoreFoundation/CFStringFolding.h"
#include "CoreFoundation/CFStringObject.h"
#include "CoreFoundation/CFStringSearch.h"

using cf::Cast;
using cf::Folded;

namespace {

CFComparisonResult ToResult(int64_t difference) {
  if (difference == 0) return kCFCompareEqualTo;
  return difference < 0 ? kCFCompareLessThan : kCFCompareGreaterThan;
}

bool IsDigit(const Folded& folded) {
  return folded.character >= U'0' && folded.character <= U'9';
}

using Position = std::vector<Folded>::const_iterator;

/// The digits at the position without leading zeros; moves the position behind them.
std::pair<Position, Position> TakeNumber(Position* at, Position end) {
  const Position stop = std::find_if_not(*at, end, IsDigit);
  const Position start =
      std::find_if(*at, stop, [](const Folded& folded) { return folded.character != U'0'; });
  *at = stop;
  return {start, stop};
}

CFComparisonResult CompareFolded(const std::vector<Folded>& text1, const std::vector<Folded>& text2,
                                 bool numerically) {
  Position at1 = text1.begin();
  Position at2 = text2.begin();
  while (at1 != text1.end() && at2 != text2.end()) {
    if (numerically && IsDigit(*at1) && IsDigit(*at2)) {
      const auto [start1, stop1] = TakeNumber(&at1, text1.end());
      const auto [start2, stop2] = TakeNumber(&at2, text2.end());
      if (stop1 - start1 != stop2 - start2) return ToResult((stop1 - start1) - (stop2 - start2));
      const auto [differs1, differs2] = std::mismatch(
          start1, stop1, start2, [](const Folded& a, const Folded& b) { return a.character == b.character; });
      if (differs1 != stop1) return ToResult(static_cast<int64_t>(differs1->character) - differs2->character);
      continue;
    }
    if (at1->character != at2->character)
      return ToResult(static_cast<int64_t>(at1->character) - at2->character);
    ++at1;
    ++at2;
  }
  return ToResult(static_cast<int64_t>(at1 != text1.end()) - static_cast<int64_t>(at2 != text2.end()));
}

CFComparisonResult CompareLiterally(std::u16string_view text1, std::u16string_view text2) {
  return ToResult(u_strCompare(text1.data(), static_cast<int32_t>(text1.size()), text2.data(),
                               static_cast<int32_t>(text2.size()), true));
}

/// The collator of the user's language for these options; null when ICU has none.
const UCollator* CollatorFor(CFStringCompareFlags options) {
  static std::mutex mutex;
  // Never closed: comparing goes on until the last static object is gone.
  static std::array<UCollator*, 8> collators{};
  const bool ignoresCase = (options & kCFCompareCaseInsensitive) != 0;
  const bool ignoresMarks = (options & kCFCompareDiacriticInsensitive) != 0;
  const bool numerically = (options & kCFCompareNumerically) != 0;
  const std::lock_guard lock(mutex);
  UCollator*& collator = collators[ignoresCase + 2 * ignoresMarks + 4 * numerically];
  if (collator == nullptr) {
    UErrorCode status = U_ZERO_ERROR;
    // The POSIX locale sorts by bytes, case and all; its users are better served by Unicode's own order.
    const std::string_view locale = uloc_getDefault();
    collator = ucol_open(locale == "en_US_POSIX" ? "" : locale.data(), &status);
    if (U_FAILURE(status)) return nullptr;
    UColAttributeValue strength = UCOL_TERTIARY;
    if (ignoresCase) strength = UCOL_SECONDARY;
    if (ignoresMarks) strength = UCOL_PRIMARY;
    ucol_setAttribute(collator, UCOL_STRENGTH, strength, &status);
    if (ignoresMarks && !ignoresCase) ucol_setAttribute(collator, UCOL_CASE_LEVEL, UCOL_ON, &status);
    ucol_setAttribute(collator, UCOL_NUMERIC_COLLATION, numerically ? UCOL_ON : UCOL_OFF, &status);
    ucol_setAttribute(collator, UCOL_NORMALIZATION_MODE, UCOL_ON, &status);
  }
  return collator;
}

CFComparisonResult CompareByOptions(std::u16string_view text1, std::u16string_view text2,
                                    CFStringCompareFlags options) {
  if ((options & kCFCompareLocalized) != 0) {
    if (const UCollator* collator = CollatorFor(options)) {
      return ToResult(ucol_strcoll(collator, text1.data(), static_cast<int32_t>(text1.size()), text2.data(),
                                   static_cast<int32_t>(text2.size())));
    }
  }
  const bool numerically = (options & kCFCompareNumerically) != 0;
  if (!numerically && !cf::NeedsFolding(options)) return CompareLiterally(text1, text2);
  return CompareFolded(cf::Fold(text1, options), cf::Fold(text2, options), numerically);
}

}  // namespace

CFComparisonResult CFStringCompare(CFStringRef string1, CFStringRef string2, CFStringCompareFlags options) {
  const auto* source1 = Cast<__CFString>(string1);
  const auto* source2 = Cast<__CFString>(string2);
  if (source1 == nullptr || source2 == nullptr) return ToResult((source1 != nullptr) - (source2 != nullptr));
  const CFComparisonResult result = CompareByOptions(source1->text, source2->text, options);
  if (result != kCFCompareEqualTo || (options & kCFCompareForcedOrdering) == 0) return result;
  return CompareLiterally(source1->text, source2->text);
}

CFRange CFStringFind(CFStringRef string, CFStringRef toFind, CFStringCompareFlags options) {
  CFRange result;
  const CFRange whole = {0, CFStringGetLength(string)};
  return CFStringFindWithOptions(string, toFind, whole, options, &result) ? result : CFRange{kCFNotFound, 0};
}

Boolean CFStringFindWithOptions(CFStringRef string, CFStringRef toFind, CFRange range,
                                CFStringCompareFlags options, CFRange* result) {
  const std::u16string_view text = cf::TextOf(string);
  const CFRange part = cf::Cut(range, text.size());
  const cf::TextSearch search(
      text.substr(static_cast<size_t>(part.location), static_cast<size_t>(part.length)), cf::TextOf(toFind),
      options);
  const std::optional<cf::TextSearch::Match> match = search.Find();
  if (!match) return false;
  if (result != nullptr) {
    *result = {part.location + static_cast<CFIndex>(match->begin),
               static_cast<CFIndex>(match->end - match->begin)};
  }
  return true;
}

Boolean CFStringHasPrefix(CFStringRef string, CFStringRef prefix) {
  const auto* source = Cast<__CFString>(string);
  const auto* start = Cast<__CFString>(prefix);
  return source != nullptr && start != nullptr && source->text.starts_with(start->text);
}

Boolean CFStringHasSuffix(CFStringRef string, CFStringRef suffix) {
  const auto* source = Cast<__CFString>(string);
  const auto* end = Cast<__CFString>(suffix);
  return source != nullptr && end != nullptr && source->text.ends_with(end->text);
}
