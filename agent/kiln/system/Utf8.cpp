#include "kiln/system/Utf8.h"

namespace kiln {
namespace {

// Length of the character at the front; 0 when there is none.
size_t CharacterLength(std::string_view text) {
  const auto byte = [text](size_t i) { return static_cast<unsigned char>(text[i]); };
  const unsigned char first = byte(0);
  if (first < 0x80) return 1;
  const size_t length = first >= 0xF0 ? 4 : first >= 0xE0 ? 3 : 2;
  if (first < 0xC2 || first > 0xF4 || text.size() < length) return 0;
  // The second byte keeps out overlong forms, surrogates and what lies behind the last plane.
  unsigned char low = 0x80;
  unsigned char high = 0xBF;
  if (first == 0xE0) low = 0xA0;
  if (first == 0xED) high = 0x9F;
  if (first == 0xF0) low = 0x90;
  if (first == 0xF4) high = 0x8F;
  if (byte(1) < low || byte(1) > high) return 0;
  for (size_t i = 2; i < length; ++i) {
    if ((byte(i) & 0xC0) != 0x80) return 0;
  }
  return length;
}

}  // namespace

bool IsUtf8(std::string_view text) {
  while (!text.empty()) {
    const size_t length = CharacterLength(text);
    if (length == 0) return false;
    text.remove_prefix(length);
  }
  return true;
}

std::string Readable(std::string_view text) {
  std::string readable;
  while (!text.empty()) {
    const size_t length = CharacterLength(text);
    readable.append(length == 0 ? "?" : text.substr(0, length));
    text.remove_prefix(length == 0 ? 1 : length);
  }
  return readable;
}

}  // namespace kiln
