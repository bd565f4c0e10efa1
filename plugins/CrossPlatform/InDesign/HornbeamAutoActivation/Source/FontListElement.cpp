#include "FontListElement.h"

#include "PMString.h"

namespace {

constexpr int32 kMaxFontNameLength = 32;

}  // namespace

bool FontListElement::IsValidFontName(const PMString& name) {
  return !name.IsEmpty() && name.CharCount() <= kMaxFontNameLength && !name.Contains(" ");
}
