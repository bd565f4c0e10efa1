#include "kiln/reader/FontText.h"

#include <strings.h>

namespace kiln {
namespace {

constexpr size_t kLongestText = 1024;
constexpr size_t kLongestPostScriptName = 127;

void AppendUtf8(uint32_t c, std::string& out) {
  if (c < 0x80) {
    out.push_back(static_cast<char>(c));
  } else if (c < 0x800) {
    out.push_back(static_cast<char>(0xC0 | (c >> 6)));
    out.push_back(static_cast<char>(0x80 | (c & 0x3F)));
  } else if (c < 0x10000) {
    out.push_back(static_cast<char>(0xE0 | (c >> 12)));
    out.push_back(static_cast<char>(0x80 | ((c >> 6) & 0x3F)));
    out.push_back(static_cast<char>(0x80 | (c & 0x3F)));
  } else {
    out.push_back(static_cast<char>(0xF0 | (c >> 18)));
    out.push_back(static_cast<char>(0x80 | ((c >> 12) & 0x3F)));
    out.push_back(static_cast<char>(0x80 | ((c >> 6) & 0x3F)));
    out.push_back(static_cast<char>(0x80 | (c & 0x3F)));
  }
}

bool IsControl(uint32_t c) {
  return c < 0x20 || (c >= 0x7F && c < 0xA0);
}

std::string Trimmed(const std::string& text) {
  const size_t first = text.find_first_not_of(' ');
  if (first == std::string::npos) return {};
  return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

}  // namespace

std::string TextFromUtf16(std::span<const uint8_t> bytes) {
  std::string text;
  for (size_t i = 0; i + 1 < bytes.size() && text.size() < kLongestText; i += 2) {
    uint32_t c = (uint32_t{bytes[i]} << 8) | bytes[i + 1];
    if (c >= 0xD800 && c < 0xDC00 && i + 3 < bytes.size()) {
      const uint32_t low = (uint32_t{bytes[i + 2]} << 8) | bytes[i + 3];
      if (low >= 0xDC00 && low < 0xE000) {
        c = 0x10000 + ((c - 0xD800) << 10) + (low - 0xDC00);
        i += 2;
      }
    }
    if (IsControl(c) || (c >= 0xD800 && c < 0xE000)) continue;
    AppendUtf8(c, text);
  }
  return Trimmed(text);
}

std::string TextFromAscii(std::string_view bytes) {
  std::string text;
  for (const unsigned char c : bytes.substr(0, kLongestText)) {
    if (c < 0x80 && !IsControl(c)) text.push_back(static_cast<char>(c));
  }
  return Trimmed(text);
}

std::string PostScriptNameFrom(std::string_view bytes) {
  std::string name;
  for (const char c : TextFromAscii(bytes)) {
    if (std::string_view(" ()[]{}<>/%").find(c) == std::string_view::npos) name.push_back(c);
  }
  return name.substr(0, kLongestPostScriptName);
}

std::string VersionFrom(const std::string& text) {
  constexpr std::string_view kWord = "version";
  if (text.size() > kWord.size() && strncasecmp(text.c_str(), kWord.data(), kWord.size()) == 0) {
    const size_t number = text.find_first_not_of(" :", kWord.size());
    if (number != std::string::npos) return text.substr(number);
  }
  return text;
}

}  // namespace kiln
