#pragma once

#include <cstdarg>
#include <cstddef>
#include <string>
#include <vector>

/// Operations on byte strings; none depends on the locale. A byte of 0x80 and above counts as graphic, so
/// that UTF-8 text is never cut.
class GStringUtils {
 public:
  GStringUtils() = delete;

  /// Cuts at every character of `delimiters`; runs of them make no empty tokens.
  static std::vector<std::string> OSTokenizeString(const std::string& text, const std::string& delimiters);

  /// Cuts at each whole occurrence of the separator. Empty text or an empty separator gives an empty list.
  static std::vector<std::string> Split(const std::string& text, const std::string& separator);

  /// Replaces from the left, up to `maxCount` times; -1 means all. What has been put in isn't searched again.
  static std::string StringReplace(const std::string& text, const std::string& search,
                                   const std::string& replacement, int maxCount);

  /// Removes the prefix (suffix) as often as it occurs there; an empty one leaves the text unchanged.
  static std::string StripPrecedingString(const std::string& text, const std::string& prefix);
  static std::string StripTrailingString(const std::string& text, const std::string& suffix);

  /// Removes characters that aren't graphic.
  static std::string StripPrecedingWhitespace(const std::string& text);
  static std::string StripTrailingWhitespace(const std::string& text);

  /// The offset of the first graphic character, std::string::npos without one.
  static std::size_t FirstNonWhiteSpaceCharacterLoc(const std::string& text);

  static bool BeginsWith(const std::string& text, const std::string& prefix);
  static bool EndsWith(const std::string& text, const std::string& suffix);

  /// Lowers A to Z; other bytes stay.
  static std::string OSToLowerCase(const std::string& text);

  /// The system's vsnprintf: the length that the whole text needs, or a negative number.
  static int OSvsnprintf(char* buffer, std::size_t size, const char* format, va_list args)
      __attribute__((format(printf, 3, 0)));
};
