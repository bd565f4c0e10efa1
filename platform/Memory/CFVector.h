#pragma once

#include <CoreFoundation/CoreFoundation.h>

#include <string>
#include <string_view>
#include <vector>

#include "Memory/CFCast.h"
#include "Memory/RetainPtr.h"

/// Conversions at a boundary: lists and texts become C++ values once, and back once.

/// UTF-8. Half a surrogate pair becomes U+FFFD; NULL or no string gives "".
std::string ToStdString(CFStringRef string);
/// The text when the object is a string, else "".
std::string ToStdString(CFTypeRef object);

/// Null when the text isn't valid UTF-8.
RetainPtr<CFStringRef> ToCFString(std::string_view text);

/// The elements that are a T, in their order; others are left out.
template <typename T>
std::vector<RetainPtr<T>> ToVector(CFArrayRef array) {
  std::vector<RetainPtr<T>> result;
  const CFIndex count = CFArrayGetCount(array);
  result.reserve(static_cast<size_t>(count));
  for (CFIndex i = 0; i < count; ++i) {
    if (T value = dynamicCF<T>(CFArrayGetValueAtIndex(array, i)); value != nullptr) {
      result.push_back(retainCF(value));
    }
  }
  return result;
}

/// A new array of the objects; empty pointers are left out.
template <typename T>
RetainPtr<CFMutableArrayRef> ToCFArray(const std::vector<RetainPtr<T>>& objects) {
  auto result = adoptCF(CFArrayCreateMutable(kCFAllocatorDefault, static_cast<CFIndex>(objects.size()),
                                             &kCFTypeArrayCallBacks));
  for (const RetainPtr<T>& object : objects) CFArrayAppendValue(result.get(), object.get());
  return result;
}

/// The strings of the array as UTF-8; other elements are left out.
std::vector<std::string> ToStringVector(CFArrayRef array);
/// A new array of strings; texts that aren't UTF-8 are left out.
RetainPtr<CFMutableArrayRef> ToCFArray(const std::vector<std::string>& texts);

/// A copy of the bytes; empty for NULL or no data.
std::vector<UInt8> ToBytes(CFDataRef data);
RetainPtr<CFDataRef> ToCFData(std::string_view bytes);

/// The path of a file URL, absolute; "" for no URL.
std::string ToPath(CFURLRef url);
/// Null for an empty path.
RetainPtr<CFURLRef> ToCFURL(std::string_view path, bool isFolder);

/// An empty dictionary or array of objects, to be filled.
RetainPtr<CFMutableDictionaryRef> MakeDictionary();
RetainPtr<CFMutableArrayRef> MakeArray();
