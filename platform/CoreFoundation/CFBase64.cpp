#include "CoreFoundation/CFBase64.h"

#include <cstddef>

namespace cf {

namespace {

constexpr std::string_view kAlphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

/// -1 outside the alphabet.
int ValueOf(char character) {
  if (character >= 'A' && character <= 'Z') return character - 'A';
  if (character >= 'a' && character <= 'z') return character - 'a' + 26;
  if (character >= '0' && character <= '9') return character - '0' + 52;
  if (character == '+') return 62;
  return character == '/' ? 63 : -1;
}

}  // namespace

std::string EncodeBase64(std::string_view bytes) {
  std::string text;
  text.reserve((bytes.size() + 2) / 3 * 4);
  for (size_t i = 0; i < bytes.size(); i += 3) {
    const size_t count = bytes.size() - i < 3 ? bytes.size() - i : 3;
    UInt32 group = 0;
    for (size_t j = 0; j < 3; ++j)
      group = group << 8 | (j < count ? static_cast<unsigned char>(bytes[i + j]) : 0);
    for (size_t j = 0; j < 4; ++j) text.push_back(j <= count ? kAlphabet[group >> (18 - 6 * j) & 63] : '=');
  }
  return text;
}

std::optional<std::vector<UInt8>> DecodeBase64(std::string_view text) {
  std::vector<UInt8> bytes;
  bytes.reserve(text.size() / 4 * 3);
  UInt32 group = 0;
  int digits = 0;
  int padding = 0;
  for (const char character : text) {
    if (character == ' ' || (character >= '\t' && character <= '\r')) continue;
    const int value = character == '=' ? 0 : ValueOf(character);
    if (value < 0 || (padding > 0 && character != '=')) return std::nullopt;
    if (character == '=') ++padding;
    group = group << 6 | static_cast<UInt32>(value);
    if (++digits < 4) continue;
    if (padding > 2) return std::nullopt;
    for (int i = 0; i < 3 - padding; ++i) bytes.push_back(static_cast<UInt8>(group >> (16 - 8 * i)));
    group = 0;
    digits = 0;
    // Nothing may follow a padded group, so its padding is left standing.
  }
  if (digits != 0) return std::nullopt;
  return bytes;
}

}  // namespace cf
