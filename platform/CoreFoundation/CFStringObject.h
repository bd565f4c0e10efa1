#pragma once

#include <CoreFoundation/CFString.h>

#include <atomic>
#include <string>
#include <string_view>
#include <utility>

#include "CoreFoundation/CFRuntime.h"

struct __CFString final : cf::Object {
  static constexpr cf::TypeNumber kType = cf::kStringType;

  explicit __CFString(std::u16string units, bool isMutable = false, size_t limit = 0)
      : Object(kType), text(std::move(units)), mutability(isMutable), maxLength(limit) {
    Limit();
  }
  ~__CFString() override { delete utf8_.load(std::memory_order_relaxed); }

  bool Equals(const Object& other) const override {
    return text == static_cast<const __CFString&>(other).text;
  }
  CFHashCode Hash() const override;
  bool IsMutable() const override { return mutability; }
  std::string Describe(int depth) const override;

  /// The text as UTF-8, kept with the object; null for a mutable string, or when it can't be said with a zero
  /// at its end.
  const std::string* KeptUTF8() const;

  /// Cuts the text to the length the string was made for.
  void Limit() {
    if (maxLength != 0 && text.size() > maxLength) text.resize(maxLength);
  }

  std::u16string text;
  const bool mutability;
  const size_t maxLength;

 private:
  mutable std::atomic<CFHashCode> hash_{0};
  mutable std::atomic<const std::string*> utf8_{nullptr};
};

namespace cf {

/// An immutable string of valid UTF-8; broken bytes become U+FFFD.
CFStringRef NewString(std::string_view utf8);
/// An immutable string.
CFStringRef NewString(std::u16string text);

/// "" for anything but a string.
inline std::u16string_view TextOf(CFTypeRef reference) {
  const auto* string = Cast<__CFString>(reference);
  return string == nullptr ? std::u16string_view() : std::u16string_view(string->text);
}

/// UTF-8 of the text; half a surrogate pair becomes U+FFFD.
std::string ToUTF8(std::u16string_view text);
/// Broken bytes become U+FFFD.
std::u16string FromUTF8Leniently(std::string_view utf8);

}  // namespace cf
