#include "CoreFoundation/CFStringObject.h"

#include <unicode/unistr.h>

#include <functional>

#include "CoreFoundation/CFStringEncodings.h"

CFHashCode __CFString::Hash() const {
  CFHashCode hash = hash_.load(std::memory_order_relaxed);
  if (hash != 0) return hash;
  hash = std::hash<std::u16string_view>()(text);
  if (!mutability) hash_.store(hash, std::memory_order_relaxed);
  return hash;
}

std::string __CFString::Describe(int) const {
  return cf::ToUTF8(text);
}

const std::string* __CFString::KeptUTF8() const {
  if (mutability) return nullptr;
  if (const std::string* kept = utf8_.load(std::memory_order_acquire)) return kept;
  if (text.find(u'\0') != std::u16string::npos) return nullptr;
  std::optional<std::string> bytes = cf::EncodeWhole(text, kCFStringEncodingUTF8);
  if (!bytes) return nullptr;
  const auto* made = new std::string(std::move(*bytes));
  const std::string* expected = nullptr;
  if (utf8_.compare_exchange_strong(expected, made, std::memory_order_acq_rel)) return made;
  delete made;
  return expected;
}

namespace cf {

CFStringRef NewString(std::string_view utf8) {
  return NewString(FromUTF8Leniently(utf8));
}

CFStringRef NewString(std::u16string text) {
  return new __CFString(std::move(text));
}

std::string ToUTF8(std::u16string_view text) {
  std::string bytes;
  bytes.reserve(text.size());
  const icu::UnicodeString alias(false, text.data(), static_cast<int32_t>(text.size()));
  alias.toUTF8String(bytes);
  return bytes;
}

std::u16string FromUTF8Leniently(std::string_view utf8) {
  const icu::UnicodeString text =
      icu::UnicodeString::fromUTF8(icu::StringPiece(utf8.data(), static_cast<int32_t>(utf8.size())));
  return {text.getBuffer(), static_cast<size_t>(text.length())};
}

}  // namespace cf
