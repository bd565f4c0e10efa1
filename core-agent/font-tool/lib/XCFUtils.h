#pragma once

#include <CoreFoundation/CoreFoundation.h>

#include <string>
#include <string_view>

#include "Memory/CFVector.h"

/// Getters and setters on property dictionaries in which every scalar is a string: numbers as decimal text,
/// booleans as "1" or "0".
///
/// Every getter takes any dictionary, null included, and any key: a value that is absent or isn't a string is
/// the neutral result, never a crash. Text is UTF-8. Setters ignore a null dictionary or key; the dictionary
/// retains what is put into it.
namespace XCFUtils {

/// The decimal number at the start of the text, as strtol() reads it; 0 when absent, no number, or out of the
/// range of the type.
long GetLongFromDictString(CFDictionaryRef dict, CFStringRef key);
unsigned long GetULongFromDictString(CFDictionaryRef dict, CFStringRef key);

/// True exactly for the text "1".
bool GetBoolFromDictString(CFDictionaryRef dict, CFStringRef key);

/// Empty when absent.
std::string GetStringFromDict(CFDictionaryRef dict, CFStringRef key);

/// The value itself when it is a string, else null. Not retained.
CFStringRef GetCFStringFromDict(CFDictionaryRef dict, CFStringRef key);

void PutLongIntoDictAsString(CFMutableDictionaryRef dict, CFStringRef key, long value);
void PutULongIntoDictAsString(CFMutableDictionaryRef dict, CFStringRef key, unsigned long value);
void PutBoolIntoDictAsString(CFMutableDictionaryRef dict, CFStringRef key, bool value);

/// Text that isn't UTF-8 is not put: what stood under the key stays.
void PutStringIntoDict(CFMutableDictionaryRef dict, CFStringRef key, std::string_view value);

/// The text of a string as UTF-8; empty for null and for any other type.
inline std::string GetStdString(CFTypeRef string) {
  return ToStdString(string);
}

/// A new string; null for text that isn't UTF-8.
inline RetainPtr<CFStringRef> CreateString(std::string_view utf8) {
  return ToCFString(utf8);
}

}  // namespace XCFUtils
