#include "LoomInterface/LoomDictionary.h"

#include "XCFUtils.h"

LoomDictionary::LoomDictionary()
    : m_dictionary(adoptCF(CFDictionaryCreateMutable(nullptr, 0, &kCFTypeDictionaryKeyCallBacks,
                                                     &kCFTypeDictionaryValueCallBacks))) {}

std::string LoomDictionary::GetStringForKey(CFStringRef key) const {
  return XCFUtils::GetStringFromDict(m_dictionary.get(), key);
}

void LoomDictionary::SetStringForKey(CFStringRef key, CFStringRef value) {
  if (key != nullptr && value != nullptr) CFDictionarySetValue(m_dictionary.get(), key, value);
}
