#include <algorithm>
#include <array>
#include <charconv>
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

bool IsPlain(char c) {
  return kIsPlain[static_cast<unsigned char>(c)];
}

bool IsDigit(char c) {
  return c >= '0' && c <= '9';
}

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
  if (TakeTokenInBlock()) return m_sCurrentToken;
  m_sCurrentToken.clear();
  SkipWhitespace();
  while (m_nError == 0 && m_sCurrentToken.size() < kMaxTokenLength) {
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

// The same for a token that stands in the block as it is, with what ends it and one character more, which is
// what nearly all of them do. False for any other one, with nothing read.
bool PDFObjectReader::TakeTokenInBlock() {
  if (m_nBlockPosition < 0 || m_nBlockPosition >= m_nBlockLength || m_nError != 0) return false;
  const char* const last = m_block + m_nBlockLength - 1;  // its reading would bring the next block
  const char* begin = m_block + m_nBlockPosition;
  while (begin < last && IsWhite(*begin)) ++begin;
  if (begin >= last) return false;

  const char* end = begin + 1;
  const char* next = nullptr;  // where reading goes on
  if (IsDelimiter(*begin)) {
    if ((*begin == '<' || *begin == '>') && *end == *begin) ++end;
    next = end;
  } else {
    if (!IsPlain(*begin) && *begin != '/') return false;
    while (end < last && IsPlain(*end)) ++end;
    if (*end == '\\' || *end == '#' || (end == last && !IsDelimiter(*end))) return false;
    next = end;
    if (IsWhite(*end)) next += *end == '\r' && end < last && end[1] == '\n' ? 2 : 1;
  }
  if (next > last) return false;
  m_sCurrentToken.assign(begin, end);
  m_nBlockPosition = static_cast<int>(next - m_block);
  return true;
}

// Reads an entry of a cross-reference table that stands in the block in the published form of 20 bytes; the
// result is what its two numbers and its character would give one by one. False for any other one, with
// nothing read.
bool PDFObjectReader::TakeXRefEntryInBlock(int64_t* offset, int64_t* generation, char* state) {
  constexpr int kOffsetDigits = 10;
  constexpr int kGenerationDigits = 5;
  constexpr int kStatePlace = kOffsetDigits + kGenerationDigits + 2;
  if (m_nBlockPosition < 0 || m_nBlockPosition >= m_nBlockLength || m_nError != 0) return false;
  const char* const last = m_block + m_nBlockLength - 1;
  const char* next = m_block + m_nBlockPosition;
  while (next < last && IsWhite(*next)) ++next;
  if (last - next <= kStatePlace || next[kOffsetDigits] != ' ' || next[kStatePlace - 1] != ' ') return false;

  const auto readDigits = [](const char* digits, int count, int64_t* value) {
    *value = 0;
    for (const char* end = digits + count; digits < end; ++digits) {
      if (!IsDigit(*digits)) return false;
      *value = *value * 10 + (*digits - '0');
    }
    return true;
  };
  if (!readDigits(next, kOffsetDigits, offset) ||
      !readDigits(next + kOffsetDigits + 1, kGenerationDigits, generation)) {
    return false;
  }
  *state = next[kStatePlace];
  m_nBlockPosition = static_cast<int>(next + kStatePlace + 1 - m_block);
  return true;
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
