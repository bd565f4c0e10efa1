#include <algorithm>
#include <array>
#include <charconv>
#include <cstddef>
#include <limits>

#include "Parsers/PDFObjectReader.h"

namespace {

constexpr size_t kMaxTokenLength = 256;

bool IsWhite(char c) {
  return c == ' ' || c == '\r' || c == '\n' || c == '\t';
}

// What ends a token before it is read.
bool IsDelimiter(char c) {
  return c == '[' || c == ']' || c == '(' || c == ')' || c == '<' || c == '>';
}

// What is part of a token wherever it stands.
constexpr std::array<bool, 256> kIsPlain = [] {
  std::array<bool, 256> isPlain{};
  isPlain.fill(true);
  for (const char c : std::string_view(" \r\n\t[]()<>/\\#")) isPlain[static_cast<unsigned char>(c)] = false;
  return isPlain;
}();

int HexValue(char c) {
  if (c >= '0' && c <= '9') return c - '0';
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  if (c >= 'A' && c <= 'F') return c - 'A' + 10;
  return -1;
}

}  // namespace

char PDFObjectReader::PeekCharacter() const {
  if (m_nBlockPosition < 0) return '/';
  return m_nBlockPosition < m_nBlockLength ? m_block[m_nBlockPosition] : '\0';
}

char PDFObjectReader::ReadCharacter() {
  if (m_nBlockPosition < 0) {
    m_nBlockPosition = 0;
    return '/';
  }
  if (m_nBlockPosition >= m_nBlockLength) {
    m_nError = -1;
    return '\0';
  }
  const char c = m_block[m_nBlockPosition++];
  // At once, so that the next character can always be looked at.
  if (m_nBlockPosition >= m_nBlockLength) ReadBlock();
  return c;
}

void PDFObjectReader::SkipWhitespace() {
  while (m_nError == 0 && IsWhite(PeekCharacter())) ReadCharacter();
}

const std::string& PDFObjectReader::ProcessToken(bool /*unused*/) {
  m_sCurrentToken.clear();
  SkipWhitespace();
  while (m_nError == 0 && m_sCurrentToken.size() < kMaxTokenLength) {
    AppendPlainCharacters();
    if (m_sCurrentToken.size() == kMaxTokenLength) break;
    const bool isFirst = m_sCurrentToken.empty();
    char c = PeekCharacter();
    if (IsDelimiter(c)) {
      if (!isFirst) break;
      m_sCurrentToken += ReadCharacter();
      if ((c == '<' || c == '>') && m_nError == 0 && PeekCharacter() == c) m_sCurrentToken += ReadCharacter();
      break;
    }
    ReadCharacter();
    if (c == '\r' && PeekCharacter() == '\n') ReadCharacter();
    if (IsWhite(c) || c == '\\') break;
    if (c == '/' && !isFirst) {
      --m_nBlockPosition;  // pushed back
      break;
    }
    // A decoded character is part of the name, whatever it is.
    if (c == '#' && m_sCurrentToken[0] == '/') c = ReadHexPair(c);
    m_sCurrentToken += c;
  }
  return m_sCurrentToken;
}

// Takes what would be taken one by one, up to the last character of the block, which brings the next block.
void PDFObjectReader::AppendPlainCharacters() {
  if (m_nBlockPosition < 0) return;
  const char* const begin = m_block + m_nBlockPosition;
  const auto room = static_cast<std::ptrdiff_t>(kMaxTokenLength - m_sCurrentToken.size());
  const char* const limit =
      begin + std::clamp<std::ptrdiff_t>(m_nBlockLength - 1 - m_nBlockPosition, 0, room);
  const char* end = begin;
  while (end < limit && kIsPlain[static_cast<unsigned char>(*end)]) ++end;
  m_sCurrentToken.append(begin, end);
  m_nBlockPosition += static_cast<int>(end - begin);
}

// The character that the next two digits stand for; without them `plain`, with nothing read.
char PDFObjectReader::ReadHexPair(char plain) {
  char pair[2] = {};
  if (ReadAt(GetCurrentPosition(), pair, 2) != 2) return plain;
  const int high = HexValue(pair[0]);
  const int low = HexValue(pair[1]);
  if (high < 0 || low < 0) return plain;
  ReadCharacter();
  ReadCharacter();
  return static_cast<char>(high * 16 + low);
}

const std::string& PDFObjectReader::ProcessLine() {
  m_sCurrentToken.clear();
  while (m_nError == 0 && m_sCurrentToken.size() < kMaxTokenLength) {
    const char c = ReadCharacter();
    if (c == '\r' && PeekCharacter() == '\n') ReadCharacter();
    if (c == '\r' || c == '\n') break;
    m_sCurrentToken += c;
  }
  return m_sCurrentToken;
}

bool PDFObjectReader::IsNumber(std::string_view text, int64_t* outValue) {
  int64_t value = 0;
  if (!text.empty()) {
    if (text[0] == '-') return false;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc() || end != text.data() + text.size()) return false;
  }
  if (outValue != nullptr) *outValue = value;
  return true;
}

int64_t PDFObjectReader::GetCurrentNumber() {
  int64_t value = 0;
  return IsNumber(ProcessToken(), &value) ? value : 0;
}

int32_t PDFObjectReader::ToInt32(std::string_view token) {
  int64_t value = 0;
  if (!IsNumber(token, &value) || value > std::numeric_limits<int32_t>::max()) return 0;
  return static_cast<int32_t>(value);
}

std::string PDFObjectReader::StripPDFLabel(std::string_view name) {
  if (!name.empty() && name[0] == '/') name.remove_prefix(1);
  return std::string(name);
}

std::string PDFObjectReader::StripPDFFontName(std::string_view name) {
  std::string result = StripPDFLabel(name);
  for (size_t i = result.size(); i-- > 0;) {
    if (result[i] == ',') result[i] = '-';
    if (result[i] == '+') {
      result.erase(0, i + 1);
      break;
    }
  }
  static constexpr std::string_view kCorporatePrefix = "AdobeCorpID-";
  if (result.starts_with(kCorporatePrefix)) result.erase(0, kCorporatePrefix.size());
  return result;
}
