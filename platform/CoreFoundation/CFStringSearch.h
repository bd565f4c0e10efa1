#pragma once

#include <CoreFoundation/CFString.h>

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "CoreFoundation/CFStringFolding.h"

namespace cf {

/// A search for one text in another, which must live as long. For the sources of this folder only.
class TextSearch {
 public:
  /// In UTF-16 units of the text searched.
  struct Match {
    size_t begin;
    size_t end;
  };

  TextSearch(std::u16string_view text, std::u16string_view pattern, CFStringCompareFlags options);

  /// The first match, or as the options say the last, or the one at the start or end.
  std::optional<Match> Find() const;

  /// All matches without overlaps, in the order of the text; of overlapping ones the first counts, or with
  /// kCFCompareBackwards the last.
  std::vector<Match> FindAll() const;

 private:
  std::optional<Match> FindFrom(size_t place) const;
  std::optional<Match> FindBefore(size_t limit) const;
  /// The match at this place of the folded text, if it begins and ends with whole characters of the source.
  std::optional<Match> MatchAt(size_t place) const;

  const CFStringCompareFlags options_;
  std::vector<Folded> places_;
  std::u32string text_;
  std::u32string pattern_;
};

}  // namespace cf
