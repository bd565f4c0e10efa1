#pragma once

#include <CoreFoundation/CFString.h>

#include <string_view>
#include <vector>

/// Text made comparable: what a comparison or search is to overlook is taken away. For the sources of this
/// folder only.
namespace cf {

/// A code point of a folded text, and the units of the source that it comes from.
struct Folded {
  char32_t character;
  size_t begin;
  size_t end;
};

/// Whether the options overlook anything.
constexpr bool NeedsFolding(CFStringCompareFlags options) {
  return (options & (kCFCompareCaseInsensitive | kCFCompareNonliteral | kCFCompareDiacriticInsensitive |
                     kCFCompareWidthInsensitive)) != 0;
}

/// Case by Unicode's full folding; spellings by canonical decomposition and order; diacritics are the
/// non-spacing marks; width by the wide and narrow compatibility forms.
std::vector<Folded> Fold(std::u16string_view text, CFStringCompareFlags options);

}  // namespace cf
