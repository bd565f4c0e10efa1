#include "CoreFoundation/CFStringsFile.h"

#include <algorithm>
#include <optional>

#include "CoreFoundation/CFStringEncodings.h"
#include "CoreFoundation/CFStringObject.h"

namespace cf {

namespace {

bool IsSpace(char16_t unit) {
  return unit == u' ' || (unit >= u'\t' && unit <= u'\r') || unit == u'\uFEFF';
}

bool IsWordUnit(char16_t unit) {
  return (unit >= u'0' && unit <= u'9') || (unit >= u'A' && unit <= u'Z') || (unit >= u'a' && unit <= u'z') ||
         std::u16string_view(u"_.$:-").find(unit) != std::u16string_view::npos;
}

/// The value of a digit, or 16.
unsigned DigitValue(char16_t unit) {
  if (unit >= u'0' && unit <= u'9') return unit - u'0';
  if (unit >= u'a' && unit <= u'f') return unit - u'a' + 10U;
  if (unit >= u'A' && unit <= u'F') return unit - u'A' + 10U;
  return 16;
}

class Parser {
 public:
  explicit Parser(std::u16string_view text) : text_(text) {}

  StringsTable Parse() {
    StringsTable table;
    for (SkipBlank(); !AtEnd(); SkipBlank()) {
      const size_t start = at_;
      if (!ReadEntry(&table)) SkipEntry(start);
    }
    return table;
  }

 private:
  bool AtEnd() const { return at_ >= text_.size(); }

  bool Take(char16_t unit) {
    if (AtEnd() || text_[at_] != unit) return false;
    ++at_;
    return true;
  }

  /// White space and comments.
  void SkipBlank() {
    while (!AtEnd()) {
      if (IsSpace(text_[at_])) {
        ++at_;
      } else if (text_.substr(at_).starts_with(u"/*")) {
        const size_t end = text_.find(u"*/", at_ + 2);
        at_ = end == std::u16string_view::npos ? text_.size() : end + 2;
      } else if (text_.substr(at_).starts_with(u"//")) {
        at_ = std::min(text_.find_first_of(u"\n\r", at_), text_.size());
      } else {
        return;
      }
    }
  }

  bool ReadEntry(StringsTable* table) {
    const std::optional<std::u16string> key = ReadText();
    if (!key) return false;
    SkipBlank();
    std::optional<std::u16string> value = key;
    if (Take(u'=')) {
      SkipBlank();
      value = ReadText();
      SkipBlank();
    }
    if (!value || !Take(u';')) return false;
    (*table)[*key] = *value;
    return true;
  }

  /// To behind the next ";", or to a text that begins a line: there the next entry has begun.
  void SkipEntry(size_t start) {
    for (; !AtEnd(); ++at_) {
      if (at_ > start && text_[at_] == u'"' && BeginsLine()) return;
      if (Take(u';')) return;
    }
  }

  bool BeginsLine() const {
    const size_t before = text_.find_last_not_of(u" \t", at_ - 1);
    return before == std::u16string_view::npos || text_[before] == u'\n' || text_[before] == u'\r';
  }

  std::optional<std::u16string> ReadText() {
    if (Take(u'"')) return ReadQuoted();
    const size_t start = at_;
    while (!AtEnd() && IsWordUnit(text_[at_])) ++at_;
    if (at_ == start) return std::nullopt;
    return std::u16string(text_.substr(start, at_ - start));
  }

  std::optional<std::u16string> ReadQuoted() {
    std::u16string result;
    while (!AtEnd()) {
      const char16_t unit = text_[at_++];
      if (unit == u'"') return result;
      result.push_back(unit == u'\\' ? ReadEscape() : unit);
    }
    return std::nullopt;
  }

  char16_t ReadEscape() {
    if (AtEnd()) return u'\\';
    const char16_t unit = text_[at_++];
    switch (unit) {
      case u'n':
        return u'\n';
      case u'r':
        return u'\r';
      case u't':
        return u'\t';
      case u'U':
      case u'u':
        return ReadNumber(16, 4);
      default:
        if (DigitValue(unit) >= 8) return unit;
        --at_;
        return ReadNumber(8, 3);
    }
  }

  char16_t ReadNumber(unsigned base, int mostDigits) {
    unsigned number = 0;
    for (int i = 0; i < mostDigits && !AtEnd() && DigitValue(text_[at_]) < base; ++i) {
      number = number * base + DigitValue(text_[at_++]);
    }
    return static_cast<char16_t>(number);
  }

  std::u16string_view text_;
  size_t at_ = 0;
};

}  // namespace

StringsTable ParseStrings(std::string_view bytes) {
  std::optional<std::u16string> text;
  if (bytes.starts_with("\xFF\xFE") || bytes.starts_with("\xFE\xFF")) {
    text = Decode(bytes.substr(0, bytes.size() / 2 * 2), kCFStringEncodingUTF16, true);
  }
  if (!text) text = FromUTF8Leniently(bytes);
  return Parser(*text).Parse();
}

}  // namespace cf
