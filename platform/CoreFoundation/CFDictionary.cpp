#include "CoreFoundation/CFDictionary.h"

#include <algorithm>
#include <utility>

#include "CoreFoundation/CFDictionaryObject.h"
#include "CoreFoundation/CFString.h"

using cf::Cast;
using cf::CastMutable;
using When = __CFDictionary::When;

namespace {

const void* CopyStringKey(CFAllocatorRef allocator, const void* key) {
  return CFStringCreateCopy(allocator, static_cast<CFStringRef>(key));
}

__CFDictionary* Copy(const __CFDictionary& source, bool isMutable) {
  auto* copy = new __CFDictionary(&source.keyCallBacks, &source.valueCallBacks, isMutable);
  copy->entries.reserve(source.entries.size());
  for (const auto& [key, value] : source.entries) copy->Put(key, value, When::kAbsent);
  return copy;
}

void Change(CFMutableDictionaryRef dictionary, const void* key, const void* value, When when) {
  if (__CFDictionary* target = CastMutable(dictionary)) target->Put(key, value, when);
}

}  // namespace

const CFDictionaryKeyCallBacks kCFTypeDictionaryKeyCallBacks = {
    0, &cf::RetainValue, &cf::ReleaseValue, &CFCopyDescription, &CFEqual, &CFHash};
const CFDictionaryKeyCallBacks kCFCopyStringDictionaryKeyCallBacks = {
    0, &CopyStringKey, &cf::ReleaseValue, &CFCopyDescription, &CFEqual, &CFHash};
const CFDictionaryValueCallBacks kCFTypeDictionaryValueCallBacks = {0, &cf::RetainValue, &cf::ReleaseValue,
                                                                    &CFCopyDescription, &CFEqual};

__CFDictionary::~__CFDictionary() {
  for (const auto& [key, value] : entries) {
    cf::LetGo(keyCallBacks, key);
    cf::LetGo(valueCallBacks, value);
  }
}

bool __CFDictionary::Equals(const Object& other) const {
  const auto& otherEntries = static_cast<const __CFDictionary&>(other).entries;
  if (entries.size() != otherEntries.size()) return false;
  return std::all_of(entries.begin(), entries.end(), [&](const auto& entry) {
    const auto found = otherEntries.find(entry.first);
    return found != otherEntries.end() && cf::AreEqual(valueCallBacks, entry.second, found->second);
  });
}

std::string __CFDictionary::Describe(int depth) const {
  std::string text = "{";
  for (const auto& [key, value] : entries) {
    if (text.size() > 1) text += ", ";
    text += cf::DescribeValue(keyCallBacks.copyDescription, key, depth) + " = " +
            cf::DescribeValue(valueCallBacks.copyDescription, value, depth);
  }
  return text + "}";
}

bool __CFDictionary::Put(const void* key, const void* value, When when) {
  if (cf::Refuses(keyCallBacks, key) || cf::Refuses(valueCallBacks, value)) return false;
  const auto found = entries.find(key);
  if ((when == When::kAbsent && found != entries.end()) ||
      (when == When::kPresent && found == entries.end())) {
    return true;
  }
  if (found != entries.end()) {
    const void* before = std::exchange(found->second, cf::Keep(valueCallBacks, value));
    cf::LetGo(valueCallBacks, before);
    return true;
  }
  const void* keptKey = cf::Keep(keyCallBacks, key);
  if (cf::Refuses(keyCallBacks, keptKey)) return false;
  entries.Append(keptKey, cf::Keep(valueCallBacks, value));
  return true;
}

CFTypeID CFDictionaryGetTypeID() {
  return cf::kDictionaryType;
}

CFDictionaryRef CFDictionaryCreate(CFAllocatorRef, const void** keys, const void** values, CFIndex count,
                                   const CFDictionaryKeyCallBacks* keyCallBacks,
                                   const CFDictionaryValueCallBacks* valueCallBacks) {
  if (count < 0 || (count > 0 && (keys == nullptr || values == nullptr))) return nullptr;
  auto* dictionary = new __CFDictionary(keyCallBacks, valueCallBacks, false);
  dictionary->entries.reserve(static_cast<size_t>(count));
  for (CFIndex i = 0; i < count; ++i) {
    if (dictionary->Put(keys[i], values[i], When::kAbsent)) continue;
    CFRelease(dictionary);
    return nullptr;
  }
  return dictionary;
}

CFDictionaryRef CFDictionaryCreateCopy(CFAllocatorRef, CFDictionaryRef dictionary) {
  const auto* source = Cast<__CFDictionary>(dictionary);
  if (source == nullptr) return nullptr;
  if (!source->IsMutable()) return static_cast<CFDictionaryRef>(CFRetain(dictionary));
  return Copy(*source, false);
}

CFMutableDictionaryRef CFDictionaryCreateMutable(CFAllocatorRef, CFIndex,
                                                 const CFDictionaryKeyCallBacks* keyCallBacks,
                                                 const CFDictionaryValueCallBacks* valueCallBacks) {
  return new __CFDictionary(keyCallBacks, valueCallBacks, true);
}

CFMutableDictionaryRef CFDictionaryCreateMutableCopy(CFAllocatorRef, CFIndex, CFDictionaryRef dictionary) {
  const auto* source = Cast<__CFDictionary>(dictionary);
  return source == nullptr ? nullptr : Copy(*source, true);
}

CFIndex CFDictionaryGetCount(CFDictionaryRef dictionary) {
  const auto* source = Cast<__CFDictionary>(dictionary);
  return source == nullptr ? 0 : static_cast<CFIndex>(source->entries.size());
}

CFIndex CFDictionaryGetCountOfKey(CFDictionaryRef dictionary, const void* key) {
  return CFDictionaryGetValueIfPresent(dictionary, key, nullptr);
}

CFIndex CFDictionaryGetCountOfValue(CFDictionaryRef dictionary, const void* value) {
  const auto* source = Cast<__CFDictionary>(dictionary);
  if (source == nullptr) return 0;
  return std::count_if(source->entries.begin(), source->entries.end(), [&](const auto& entry) {
    return cf::AreEqual(source->valueCallBacks, entry.second, value);
  });
}

Boolean CFDictionaryContainsKey(CFDictionaryRef dictionary, const void* key) {
  return CFDictionaryGetValueIfPresent(dictionary, key, nullptr);
}

Boolean CFDictionaryContainsValue(CFDictionaryRef dictionary, const void* value) {
  return CFDictionaryGetCountOfValue(dictionary, value) != 0;
}

const void* CFDictionaryGetValue(CFDictionaryRef dictionary, const void* key) {
  const void* value = nullptr;
  CFDictionaryGetValueIfPresent(dictionary, key, &value);
  return value;
}

Boolean CFDictionaryGetValueIfPresent(CFDictionaryRef dictionary, const void* key, const void** value) {
  const auto* source = Cast<__CFDictionary>(dictionary);
  if (source == nullptr) return false;
  const auto found = source->entries.find(key);
  if (found == source->entries.end()) return false;
  if (value != nullptr) *value = found->second;
  return true;
}

void CFDictionaryGetKeysAndValues(CFDictionaryRef dictionary, const void** keys, const void** values) {
  const auto* source = Cast<__CFDictionary>(dictionary);
  if (source == nullptr) return;
  for (const auto& [key, value] : source->entries) {
    if (keys != nullptr) *keys++ = key;
    if (values != nullptr) *values++ = value;
  }
}

void CFDictionaryApplyFunction(CFDictionaryRef dictionary, CFDictionaryApplierFunction applier,
                               void* context) {
  const auto* source = Cast<__CFDictionary>(dictionary);
  if (source == nullptr || applier == nullptr) return;
  for (const auto& [key, value] : source->entries) applier(key, value, context);
}

void CFDictionaryAddValue(CFMutableDictionaryRef dictionary, const void* key, const void* value) {
  Change(dictionary, key, value, When::kAbsent);
}

void CFDictionarySetValue(CFMutableDictionaryRef dictionary, const void* key, const void* value) {
  Change(dictionary, key, value, When::kAlways);
}

void CFDictionaryReplaceValue(CFMutableDictionaryRef dictionary, const void* key, const void* value) {
  Change(dictionary, key, value, When::kPresent);
}

void CFDictionaryRemoveValue(CFMutableDictionaryRef dictionary, const void* key) {
  __CFDictionary* target = CastMutable(dictionary);
  if (target == nullptr) return;
  const auto found = target->entries.find(key);
  if (found == target->entries.end()) return;
  const auto [removedKey, removedValue] = *found;
  target->entries.erase(found);
  cf::LetGo(target->keyCallBacks, removedKey);
  cf::LetGo(target->valueCallBacks, removedValue);
}

void CFDictionaryRemoveAllValues(CFMutableDictionaryRef dictionary) {
  __CFDictionary* target = CastMutable(dictionary);
  if (target == nullptr) return;
  // Taken out first, since a release may come back to this dictionary.
  for (const auto& [key, value] : target->entries.TakeAll()) {
    cf::LetGo(target->keyCallBacks, key);
    cf::LetGo(target->valueCallBacks, value);
  }
}
