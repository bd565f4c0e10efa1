#include "CoreFoundation/CFString.h"

#include <mutex>
#include <string>
#include <unordered_map>

#include "CoreFoundation/CFArray.h"
#include "CoreFoundation/CFData.h"
#include "CoreFoundation/CFStringEncodings.h"
#include "CoreFoundation/CFStringObject.h"
#include "Memory/RetainPtr.h"

using cf::Cast;

namespace {

CFStringRef Make(std::string_view bytes, CFStringEncoding encoding, bool isExternal) {
  std::optional<std::u16string> text = cf::Decode(bytes, encoding, isExternal);
  return text ? cf::NewString(std::move(*text)) : nullptr;
}

}  // namespace

CFTypeID CFStringGetTypeID() {
  return cf::kStringType;
}

CFStringRef CFStringCreateWithCString(CFAllocatorRef, const char* text, CFStringEncoding encoding) {
  return text == nullptr ? nullptr : Make(text, encoding, false);
}

CFStringRef CFStringCreateWithBytes(CFAllocatorRef, const UInt8* bytes, CFIndex length,
                                    CFStringEncoding encoding, Boolean isExternal) {
  if (length < 0 || (bytes == nullptr && length > 0)) return nullptr;
  return Make({reinterpret_cast<const char*>(bytes), static_cast<size_t>(length)}, encoding, isExternal);
}

CFStringRef CFStringCreateWithCharacters(CFAllocatorRef, const UniChar* characters, CFIndex length) {
  if (length < 0 || (characters == nullptr && length > 0)) return nullptr;
  return cf::NewString(std::u16string(characters, characters + length));
}

CFStringRef CFStringCreateWithFileSystemRepresentation(CFAllocatorRef allocator, const char* path) {
  return CFStringCreateWithCString(allocator, path, kCFStringEncodingUTF8);
}

CFStringRef CFStringCreateFromExternalRepresentation(CFAllocatorRef allocator, CFDataRef data,
                                                     CFStringEncoding encoding) {
  const UInt8* bytes = CFDataGetBytePtr(data);
  if (bytes == nullptr) return nullptr;
  return CFStringCreateWithBytes(allocator, bytes, CFDataGetLength(data), encoding, true);
}

CFStringRef CFStringCreateCopy(CFAllocatorRef, CFStringRef string) {
  const auto* source = Cast<__CFString>(string);
  if (source == nullptr) return nullptr;
  if (!source->IsMutable()) return static_cast<CFStringRef>(CFRetain(string));
  return cf::NewString(source->text);
}

CFStringRef CFStringCreateWithSubstring(CFAllocatorRef, CFStringRef string, CFRange range) {
  const auto* source = Cast<__CFString>(string);
  if (source == nullptr) return nullptr;
  const CFRange part = cf::Cut(range, source->text.size());
  return cf::NewString(
      source->text.substr(static_cast<size_t>(part.location), static_cast<size_t>(part.length)));
}

CFStringRef CFStringCreateByCombiningStrings(CFAllocatorRef, CFArrayRef strings, CFStringRef separator) {
  if (strings == nullptr || CFGetTypeID(strings) != CFArrayGetTypeID()) return nullptr;
  std::u16string text;
  bool first = true;
  for (CFIndex i = 0; i < CFArrayGetCount(strings); ++i) {
    const auto* part = Cast<__CFString>(CFArrayGetValueAtIndex(strings, i));
    if (part == nullptr) continue;
    if (!first) text += cf::TextOf(separator);
    first = false;
    text += part->text;
  }
  return cf::NewString(std::move(text));
}

CFArrayRef CFStringCreateArrayBySeparatingStrings(CFAllocatorRef allocator, CFStringRef string,
                                                  CFStringRef separator) {
  const auto* source = Cast<__CFString>(string);
  if (source == nullptr) return nullptr;
  const std::u16string_view text = source->text;
  const std::u16string_view mark = cf::TextOf(separator);
  auto parts = adoptCF(CFArrayCreateMutable(allocator, 0, &kCFTypeArrayCallBacks));
  size_t start = 0;
  while (start != std::u16string_view::npos) {
    const size_t end = mark.empty() ? std::u16string_view::npos : text.find(mark, start);
    auto part = adoptCF(cf::NewString(std::u16string(text.substr(start, end - start))));
    CFArrayAppendValue(parts.get(), part.get());
    start = end == std::u16string_view::npos ? end : end + mark.size();
  }
  return parts.leakRef();
}

CFMutableStringRef CFStringCreateMutable(CFAllocatorRef, CFIndex maxLength) {
  if (maxLength < 0) return nullptr;
  return new __CFString({}, true, static_cast<size_t>(maxLength));
}

CFMutableStringRef CFStringCreateMutableCopy(CFAllocatorRef, CFIndex maxLength, CFStringRef string) {
  const auto* source = Cast<__CFString>(string);
  if (source == nullptr || maxLength < 0) return nullptr;
  return new __CFString(source->text, true, static_cast<size_t>(maxLength));
}

CFStringRef __CFStringMakeConstantString(const char* text) {
  // Never freed: constants outlive every static object that may still use them.
  static auto* const mutex = new std::mutex;
  static auto* const constants = new std::unordered_map<std::string, CFStringRef>;
  const std::lock_guard lock(*mutex);
  CFStringRef& constant = (*constants)[text];
  if (constant == nullptr) {
    auto* made = new __CFString(cf::FromUTF8Leniently(text));
    made->MakeConstant();
    constant = made;
  }
  return constant;
}
