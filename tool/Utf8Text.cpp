#include "Utf8Text.h"

#include <unicode/unistr.h>

std::string ValidUtf8(std::string_view text) {
  std::string valid;
  icu::UnicodeString::fromUTF8(icu::StringPiece(text.data(), static_cast<int32_t>(text.size())))
      .toUTF8String(valid);
  return valid;
}

std::string PrintableText(std::string_view text) {
  icu::UnicodeString characters =
      icu::UnicodeString::fromUTF8(icu::StringPiece(text.data(), static_cast<int32_t>(text.size())));
  for (int32_t i = 0; i < characters.length(); ++i) {
    const char16_t unit = characters.charAt(i);
    if (unit < 0x20 || (unit >= 0x7F && unit < 0xA0)) characters.setCharAt(i, 0xFFFD);
  }
  std::string printable;
  characters.toUTF8String(printable);
  return printable;
}
