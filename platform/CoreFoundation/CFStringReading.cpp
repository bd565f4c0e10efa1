#include <locale.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <limits>

#include "CoreFoundation/CFData.h"
#include "CoreFoundation/CFString.h"
#include "CoreFoundation/CFStringEncodings.h"
#include "CoreFoundation/CFStringObject.h"

using cf::Cast;

namespace {

/// What strtod and its kin may see of the text: "." is the decimal point, no hexadecimal, no infinity.
std::string NumberAtStart(std::u16string_view text, bool withFraction) {
  size_t at = 0;
  std::string number;
  const auto isDigit = [&text](size_t i) { return i < text.size() && text[i] >= u'0' && text[i] <= u'9'; };
  const auto take = [&] { number.push_back(static_cast<char>(text[at++])); };
  while (at < text.size() && (text[at] == u' ' || (text[at] >= u'\t' && text[at] <= u'\r'))) ++at;
  if (at < text.size() && (text[at] == u'-' || text[at] == u'+')) take();
  while (isDigit(at)) take();
  if (!withFraction) return number;
  if (at < text.size() && text[at] == u'.') take();
  while (isDigit(at)) take();
  if (at < text.size() && (text[at] == u'e' || text[at] == u'E')) {
    const bool hasSign = at + 1 < text.size() && (text[at + 1] == u'-' || text[at + 1] == u'+');
    if (isDigit(at + (hasSign ? 2 : 1))) {
      take();
      if (hasSign) take();
      while (isDigit(at)) take();
    }
  }
  return number;
}

Boolean CopyOut(const std::optional<std::string>& bytes, char* buffer, CFIndex bufferSize) {
  if (buffer == nullptr || bufferSize <= 0) return false;
  buffer[0] = '\0';
  if (!bytes || bytes->size() >= static_cast<size_t>(bufferSize)) return false;
  std::memcpy(buffer, bytes->c_str(), bytes->size() + 1);
  return true;
}

}  // namespace

CFIndex CFStringGetLength(CFStringRef string) {
  return static_cast<CFIndex>(cf::TextOf(string).size());
}

UniChar CFStringGetCharacterAtIndex(CFStringRef string, CFIndex index) {
  const std::u16string_view text = cf::TextOf(string);
  return index < 0 || static_cast<size_t>(index) >= text.size() ? 0 : text[static_cast<size_t>(index)];
}

void CFStringGetCharacters(CFStringRef string, CFRange range, UniChar* buffer) {
  const std::u16string_view text = cf::TextOf(string);
  if (buffer == nullptr || !cf::IsWithin(range, text.size())) return;
  std::copy_n(text.begin() + range.location, range.length, buffer);
}

Boolean CFStringGetCString(CFStringRef string, char* buffer, CFIndex bufferSize, CFStringEncoding encoding) {
  const auto* source = Cast<__CFString>(string);
  std::optional<std::string> bytes;
  // A text that holds a zero would look cut to whoever reads the buffer.
  if (source != nullptr && source->text.find(u'\0') == std::u16string::npos) {
    bytes = cf::EncodeWhole(source->text, encoding);
  }
  return CopyOut(bytes, buffer, bufferSize);
}

const char* CFStringGetCStringPtr(CFStringRef string, CFStringEncoding encoding) {
  const auto* source = Cast<__CFString>(string);
  if (source == nullptr || (encoding != kCFStringEncodingUTF8 && encoding != kCFStringEncodingASCII))
    return nullptr;
  const std::string* kept = source->KeptUTF8();
  if (kept == nullptr || (encoding == kCFStringEncodingASCII && kept->size() != source->text.size()))
    return nullptr;
  return kept->c_str();
}

CFIndex CFStringGetBytes(CFStringRef string, CFRange range, CFStringEncoding encoding, UInt8 lossByte,
                         Boolean isExternal, UInt8* buffer, CFIndex bufferSize, CFIndex* usedBytes) {
  if (usedBytes != nullptr) *usedBytes = 0;
  const std::u16string_view text = cf::TextOf(string);
  const CFRange part = cf::Cut(range, text.size());
  if (buffer != nullptr && bufferSize < 0) return 0;
  const size_t limit =
      buffer == nullptr ? std::numeric_limits<size_t>::max() : static_cast<size_t>(bufferSize);
  std::string bytes;
  const size_t converted =
      cf::Encode(text.substr(static_cast<size_t>(part.location), static_cast<size_t>(part.length)), encoding,
                 lossByte, isExternal, limit, &bytes);
  if (buffer != nullptr) std::copy(bytes.begin(), bytes.end(), buffer);
  if (usedBytes != nullptr) *usedBytes = static_cast<CFIndex>(bytes.size());
  return static_cast<CFIndex>(converted);
}

CFIndex CFStringGetMaximumSizeForEncoding(CFIndex length, CFStringEncoding encoding) {
  const auto most = static_cast<CFIndex>(cf::MostBytesPerUnit(encoding));
  if (most == 0 || length < 0 || length > std::numeric_limits<CFIndex>::max() / most) return kCFNotFound;
  return length * most;
}

CFIndex CFStringGetMaximumSizeOfFileSystemRepresentation(CFStringRef string) {
  return CFStringGetMaximumSizeForEncoding(CFStringGetLength(string), kCFStringEncodingUTF8) + 1;
}

Boolean CFStringGetFileSystemRepresentation(CFStringRef string, char* buffer, CFIndex bufferSize) {
  return CFStringGetCString(string, buffer, bufferSize, kCFStringEncodingUTF8);
}

CFDataRef CFStringCreateExternalRepresentation(CFAllocatorRef allocator, CFStringRef string,
                                               CFStringEncoding encoding, UInt8 lossByte) {
  const auto* source = Cast<__CFString>(string);
  if (source == nullptr || !cf::IsKnownEncoding(encoding)) return nullptr;
  std::string bytes;
  const size_t converted =
      cf::Encode(source->text, encoding, lossByte, true, std::numeric_limits<size_t>::max(), &bytes);
  if (converted != source->text.size()) return nullptr;
  return CFDataCreate(allocator, reinterpret_cast<const UInt8*>(bytes.data()),
                      static_cast<CFIndex>(bytes.size()));
}

SInt32 CFStringGetIntValue(CFStringRef string) {
  const std::string number = NumberAtStart(cf::TextOf(string), false);
  const long long value = std::strtoll(number.c_str(), nullptr, 10);
  return static_cast<SInt32>(
      std::clamp<long long>(value, std::numeric_limits<SInt32>::min(), std::numeric_limits<SInt32>::max()));
}

double CFStringGetDoubleValue(CFStringRef string) {
  static const locale_t plain = newlocale(LC_ALL_MASK, "C", nullptr);
  return strtod_l(NumberAtStart(cf::TextOf(string), true).c_str(), nullptr, plain);
}

Boolean CFStringIsEncodingAvailable(CFStringEncoding encoding) {
  return cf::IsKnownEncoding(encoding);
}

CFStringEncoding CFStringGetSystemEncoding() {
  return kCFStringEncodingUTF8;
}
