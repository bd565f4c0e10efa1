#pragma once

#include <algorithm>
#include <string>
#include <string_view>
#include <utility>

#include "BaseType.h"

/// The host's text: UTF-8 inside.
class PMString {
 public:
  /// What StripWhiteSpace() takes away: blanks, tabs and line ends.
  enum WhiteSpace {
    kTrailingWhiteSpace = 0,
    kLeadingAndTrailingWhiteSpace = 1,
    kAllWhiteSpace = 2,
  };

  PMString() = default;
  PMString(const char* utf8) : m_sText(utf8 == nullptr ? "" : utf8) {}
  PMString(std::string utf8) : m_sText(std::move(utf8)) {}

  const std::string& GetUTF8String() const { return m_sText; }
  const char* c_str() const { return m_sText.c_str(); }

  bool IsEmpty() const { return m_sText.empty(); }

  /// The number of characters, where one outside ASCII counts once.
  int32 CharCount() const {
    return static_cast<int32>(std::count_if(
        m_sText.begin(), m_sText.end(), [](char byte) { return (static_cast<uchar>(byte) & 0xC0) != 0x80; }));
  }

  bool Contains(std::string_view part) const { return m_sText.find(part) != std::string::npos; }

  void Append(const PMString& text) { m_sText += text.m_sText; }

  void StripWhiteSpace(WhiteSpace which) {
    if (which == kAllWhiteSpace) {
      std::erase_if(m_sText, IsWhiteSpace);
      return;
    }
    while (!m_sText.empty() && IsWhiteSpace(m_sText.back())) {
      m_sText.pop_back();
    }
    if (which == kLeadingAndTrailingWhiteSpace) {
      m_sText.erase(m_sText.begin(), std::find_if_not(m_sText.begin(), m_sText.end(), IsWhiteSpace));
    }
  }

  /// \param caseSensitive  False takes the letters A to Z and a to z as equal; others still differ.
  /// \param ignoreWhiteSpace  True compares what is left after StripWhiteSpace(kAllWhiteSpace).
  bool IsEqual(const PMString& other, bool caseSensitive = true, bool ignoreWhiteSpace = false) const {
    return Folded(caseSensitive, ignoreWhiteSpace) == other.Folded(caseSensitive, ignoreWhiteSpace);
  }

  friend bool operator==(const PMString&, const PMString&) = default;

 private:
  static bool IsWhiteSpace(char byte) {
    return byte == ' ' || byte == '\t' || byte == '\n' || byte == '\r' || byte == '\f' || byte == '\v';
  }

  std::string Folded(bool caseSensitive, bool ignoreWhiteSpace) const {
    PMString folded(*this);
    if (ignoreWhiteSpace) {
      folded.StripWhiteSpace(kAllWhiteSpace);
    }
    if (!caseSensitive) {
      for (char& byte : folded.m_sText) {
        byte = byte >= 'A' && byte <= 'Z' ? static_cast<char>(byte - 'A' + 'a') : byte;
      }
    }
    return folded.m_sText;
  }

  std::string m_sText;
};

/// What an operation that has no text to give answers with.
inline const PMString kNullString;
