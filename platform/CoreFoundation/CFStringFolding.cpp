#include "CoreFoundation/CFStringFolding.h"

#include <unicode/uchar.h>
#include <unicode/unorm2.h>
#include <unicode/ustring.h>
#include <unicode/utf16.h>

#include <algorithm>

namespace cf {

namespace {

// The longest folding and the longest decomposition of one character take far less.
constexpr int32_t kMostUnits = 64;

template <typename Each>
void ForEachCharacter(const char16_t* units, int32_t length, Each each) {
  for (int32_t i = 0; i < length;) {
    UChar32 character = 0;
    U16_NEXT(units, i, length, character);
    each(character);
  }
}

class Folder {
 public:
  Folder(CFStringCompareFlags options, std::vector<Folded>* result) : options_(options), result_(result) {}

  void Add(UChar32 character, size_t begin, size_t end) {
    begin_ = begin;
    end_ = end;
    AddWidth(character);
  }

 private:
  void AddWidth(UChar32 character) {
    if ((options_ & kCFCompareWidthInsensitive) != 0) {
      const int32_t kind = u_getIntPropertyValue(character, UCHAR_DECOMPOSITION_TYPE);
      if (kind == U_DT_WIDE || kind == U_DT_NARROW) {
        UErrorCode status = U_ZERO_ERROR;
        char16_t units[kMostUnits];
        const int32_t length = unorm2_getRawDecomposition(unorm2_getNFKCInstance(&status), character, units,
                                                          kMostUnits, &status);
        if (U_SUCCESS(status) && length > 0) {
          ForEachCharacter(units, length, [this](UChar32 plain) { AddSpelling(plain); });
          return;
        }
      }
    }
    AddSpelling(character);
  }

  void AddSpelling(UChar32 character) {
    if ((options_ & (kCFCompareNonliteral | kCFCompareDiacriticInsensitive)) != 0) {
      UErrorCode status = U_ZERO_ERROR;
      char16_t units[kMostUnits];
      const int32_t length =
          unorm2_getDecomposition(unorm2_getNFDInstance(&status), character, units, kMostUnits, &status);
      if (U_SUCCESS(status) && length > 0) {
        ForEachCharacter(units, length, [this](UChar32 part) { AddMark(part); });
        return;
      }
    }
    AddMark(character);
  }

  void AddMark(UChar32 character) {
    const bool dropped =
        (options_ & kCFCompareDiacriticInsensitive) != 0 && u_charType(character) == U_NON_SPACING_MARK;
    if (!dropped) AddCase(character);
  }

  void AddCase(UChar32 character) {
    if ((options_ & kCFCompareCaseInsensitive) == 0 || U_IS_SURROGATE(character)) {
      Push(character);
      return;
    }
    char16_t source[2];
    int32_t sourceLength = 0;
    U16_APPEND_UNSAFE(source, sourceLength, character);
    UErrorCode status = U_ZERO_ERROR;
    char16_t units[kMostUnits];
    const int32_t length =
        u_strFoldCase(units, kMostUnits, source, sourceLength, U_FOLD_CASE_DEFAULT, &status);
    ForEachCharacter(units, length, [this](UChar32 folded) { Push(folded); });
  }

  void Push(UChar32 character) { result_->push_back({static_cast<char32_t>(character), begin_, end_}); }

  const CFStringCompareFlags options_;
  std::vector<Folded>* const result_;
  size_t begin_ = 0;
  size_t end_ = 0;
};

/// Marks on one letter in the order that the standard gives them.
void PutMarksInOrder(std::vector<Folded>* characters) {
  const auto classOf = [](const Folded& folded) {
    return u_getCombiningClass(static_cast<UChar32>(folded.character));
  };
  auto at = characters->begin();
  while (at != characters->end()) {
    if (classOf(*at) == 0) {
      ++at;
      continue;
    }
    const auto end =
        std::find_if(at, characters->end(), [&](const Folded& folded) { return classOf(folded) == 0; });
    std::stable_sort(at, end, [&](const Folded& a, const Folded& b) { return classOf(a) < classOf(b); });
    at = end;
  }
}

}  // namespace

std::vector<Folded> Fold(std::u16string_view text, CFStringCompareFlags options) {
  std::vector<Folded> result;
  result.reserve(text.size());
  Folder folder(options, &result);
  for (size_t at = 0; at < text.size();) {
    const size_t begin = at;
    UChar32 character = 0;
    U16_NEXT(text.data(), at, text.size(), character);
    folder.Add(character, begin, at);
  }
  if ((options & kCFCompareNonliteral) != 0) PutMarksInOrder(&result);
  return result;
}

}  // namespace cf
