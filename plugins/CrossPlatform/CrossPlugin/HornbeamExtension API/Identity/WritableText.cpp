#include "Identity/WritableText.h"

#include <vector>

#include "Memory/CFVector.h"

namespace {

constexpr int kMaximumDepth = 512;

bool IsHighSurrogate(UniChar unit) {
  return unit >= 0xD800 && unit < 0xDC00;
}
bool IsLowSurrogate(UniChar unit) {
  return unit >= 0xDC00 && unit < 0xE000;
}

bool IsWritable(UniChar unit) {
  if (unit < 0x20) return unit == '\t' || unit == '\n' || unit == '\r';
  return unit < 0xD800 || (unit >= 0xE000 && unit < 0xFFFE);
}

RetainPtr<CFTypeRef> CreateWritableText(CFStringRef text) {
  const CFIndex length = CFStringGetLength(text);
  std::vector<UniChar> units(static_cast<size_t>(length));
  CFStringGetCharacters(text, CFRangeMake(0, length), units.data());
  std::vector<UniChar> kept;
  kept.reserve(units.size());
  for (size_t i = 0; i < units.size(); ++i) {
    if (IsHighSurrogate(units[i]) && i + 1 < units.size() && IsLowSurrogate(units[i + 1])) {
      kept.push_back(units[i]);
      kept.push_back(units[++i]);
    } else if (IsWritable(units[i])) {
      kept.push_back(units[i]);
    }
  }
  return adoptCF(CFStringCreateWithCharacters(nullptr, kept.data(), static_cast<CFIndex>(kept.size())));
}

RetainPtr<CFTypeRef> CreateWritable(CFTypeRef value, int depth);

RetainPtr<CFMutableArrayRef> CreateWritableArray(CFArrayRef array, int depth) {
  RetainPtr<CFMutableArrayRef> copy = MakeArray();
  const CFIndex count = CFArrayGetCount(array);
  for (CFIndex i = 0; i < count; ++i) {
    const RetainPtr<CFTypeRef> value = CreateWritable(CFArrayGetValueAtIndex(array, i), depth);
    if (!value) return nullptr;
    CFArrayAppendValue(copy.get(), value.get());
  }
  return copy;
}

RetainPtr<CFMutableDictionaryRef> CreateWritableDictionary(CFDictionaryRef dictionary, int depth) {
  RetainPtr<CFMutableDictionaryRef> copy = MakeDictionary();
  const auto count = static_cast<size_t>(CFDictionaryGetCount(dictionary));
  std::vector<const void*> keys(count);
  std::vector<const void*> values(count);
  CFDictionaryGetKeysAndValues(dictionary, keys.data(), values.data());
  for (size_t i = 0; i < count; ++i) {
    const RetainPtr<CFTypeRef> key = CreateWritable(keys[i], depth);
    const RetainPtr<CFTypeRef> value = CreateWritable(values[i], depth);
    if (!key || !value) return nullptr;
    CFDictionarySetValue(copy.get(), key.get(), value.get());
  }
  return copy;
}

RetainPtr<CFTypeRef> CreateWritable(CFTypeRef value, int depth) {
  if (depth > kMaximumDepth) return nullptr;
  if (auto text = dynamicCF<CFStringRef>(value)) return CreateWritableText(text);
  if (auto array = dynamicCF<CFArrayRef>(value)) return CreateWritableArray(array, depth + 1);
  if (auto dictionary = dynamicCF<CFDictionaryRef>(value))
    return CreateWritableDictionary(dictionary, depth + 1);
  return retainCF(value);
}

}  // namespace

RetainPtr<CFArrayRef> CreateListOfWritableText(CFArrayRef list) {
  return CreateWritableArray(list, 1);
}
