#include "XCFUtils.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>

namespace {

template <typename Number>
Number ParseDecimal(const std::string& text, Number (*parse)(const char*, char**, int)) {
  errno = 0;
  const Number number = parse(text.c_str(), nullptr, 10);
  return errno == ERANGE ? 0 : number;
}

void PutText(CFMutableDictionaryRef dict, CFStringRef key, const char* text) {
  XCFUtils::PutStringIntoDict(dict, key, text);
}

}  // namespace

CFStringRef XCFUtils::GetCFStringFromDict(CFDictionaryRef dict, CFStringRef key) {
  if (dynamicCF<CFDictionaryRef>(dict) == nullptr || key == nullptr) return nullptr;
  return dynamicCF<CFStringRef>(CFDictionaryGetValue(dict, key));
}

std::string XCFUtils::GetStringFromDict(CFDictionaryRef dict, CFStringRef key) {
  return ToStdString(GetCFStringFromDict(dict, key));
}

long XCFUtils::GetLongFromDictString(CFDictionaryRef dict, CFStringRef key) {
  return ParseDecimal<long>(GetStringFromDict(dict, key), std::strtol);
}

unsigned long XCFUtils::GetULongFromDictString(CFDictionaryRef dict, CFStringRef key) {
  const std::string text = GetStringFromDict(dict, key);
  // strtoul() would wrap a negative number round.
  if (text.find('-') < text.find_first_of("0123456789")) return 0;
  return ParseDecimal<unsigned long>(text, std::strtoul);
}

bool XCFUtils::GetBoolFromDictString(CFDictionaryRef dict, CFStringRef key) {
  return GetStringFromDict(dict, key) == "1";
}

void XCFUtils::PutLongIntoDictAsString(CFMutableDictionaryRef dict, CFStringRef key, long value) {
  char text[32];
  std::snprintf(text, sizeof text, "%ld", value);
  PutText(dict, key, text);
}

void XCFUtils::PutULongIntoDictAsString(CFMutableDictionaryRef dict, CFStringRef key, unsigned long value) {
  char text[32];
  std::snprintf(text, sizeof text, "%lu", value);
  PutText(dict, key, text);
}

void XCFUtils::PutBoolIntoDictAsString(CFMutableDictionaryRef dict, CFStringRef key, bool value) {
  PutText(dict, key, value ? "1" : "0");
}

void XCFUtils::PutStringIntoDict(CFMutableDictionaryRef dict, CFStringRef key, std::string_view value) {
  const RetainPtr<CFStringRef> string = ToCFString(value);
  if (dict == nullptr || key == nullptr || !string) return;
  CFDictionarySetValue(dict, key, string.get());
}
