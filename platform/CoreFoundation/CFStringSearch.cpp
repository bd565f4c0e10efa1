#include "CoreFoundation/CFStringSearch.h"

#include <unicode/uchar.h>

#include <algorithm>

namespace cf {

TextSearch::TextSearch(std::u16string_view text, std::u16string_view pattern, CFStringCompareFlags options)
    : options_(options), places_(Fold(text, options)) {
  text_.reserve(places_.size());
  for (const Folded& folded : places_) text_.push_back(folded.character);
  for (const Folded& folded : Fold(pattern, options)) pattern_.push_back(folded.character);
}

std::optional<TextSearch::Match> TextSearch::Find() const {
  if (pattern_.empty() || pattern_.size() > text_.size()) return std::nullopt;
  const bool backwards = (options_ & kCFCompareBackwards) != 0;
  if ((options_ & kCFCompareAnchored) != 0) return MatchAt(backwards ? text_.size() - pattern_.size() : 0);
  return backwards ? FindBefore(text_.size()) : FindFrom(0);
}

std::vector<TextSearch::Match> TextSearch::FindAll() const {
  std::vector<Match> matches;
  std::optional<Match> match = Find();
  if ((options_ & kCFCompareAnchored) != 0) {
    if (match) matches.push_back(*match);
    return matches;
  }
  // Marks that were put in order may lie out of the order of the source, so places are searched from the
  // start.
  const auto placeOf = [this](size_t unit) {
    return static_cast<size_t>(
        std::partition_point(places_.begin(), places_.end(),
                             [unit](const Folded& folded) { return folded.begin < unit; }) -
        places_.begin());
  };
  const bool backwards = (options_ & kCFCompareBackwards) != 0;
  while (match) {
    matches.push_back(*match);
    match = backwards ? FindBefore(placeOf(match->begin)) : FindFrom(placeOf(match->end));
  }
  if (backwards) std::reverse(matches.begin(), matches.end());
  return matches;
}

std::optional<TextSearch::Match> TextSearch::FindFrom(size_t place) const {
  for (size_t at = text_.find(pattern_, place); at != std::u32string::npos;
       at = text_.find(pattern_, at + 1)) {
    if (std::optional<Match> match = MatchAt(at)) return match;
  }
  return std::nullopt;
}

std::optional<TextSearch::Match> TextSearch::FindBefore(size_t limit) const {
  if (limit < pattern_.size()) return std::nullopt;
  size_t at = text_.rfind(pattern_, limit - pattern_.size());
  while (at != std::u32string::npos) {
    if (std::optional<Match> match = MatchAt(at)) return match;
    if (at == 0) break;
    at = text_.rfind(pattern_, at - 1);
  }
  return std::nullopt;
}

std::optional<TextSearch::Match> TextSearch::MatchAt(size_t place) const {
  if (text_.compare(place, pattern_.size(), pattern_) != 0) return std::nullopt;
  const size_t end = place + pattern_.size();
  size_t begin = places_[place].begin;
  size_t stop = places_[place].end;
  for (size_t i = place; i < end; ++i) {
    begin = std::min(begin, places_[i].begin);
    stop = std::max(stop, places_[i].end);
  }
  // A character that folds to several isn't matched by half of it.
  if (place > 0 && places_[place - 1].end > begin) return std::nullopt;
  if (end < places_.size() && places_[end].begin < stop) return std::nullopt;
  // Nor is a letter without its marks, where spelling counts.
  if ((options_ & kCFCompareNonliteral) != 0 && end < text_.size() &&
      u_getCombiningClass(static_cast<UChar32>(text_[end])) != 0) {
    return std::nullopt;
  }
  return Match{begin, stop};
}

}  // namespace cf
