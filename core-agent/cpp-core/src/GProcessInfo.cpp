#include "GProcessInfo.h"

#include <CoreFoundation/CoreFoundation.h>

#include "GErrorCodes.h"
#include "GStringUtils.h"
#include "Memory/CFVector.h"

TErrCode GProcessInfo::OSGetCurrentProcessVersionString(std::string& outVersion) {
  const CFBundleRef bundle = CFBundleGetMainBundle();
  for (const CFStringRef key : {CFSTR("CFBundleShortVersionString"), kCFBundleVersionKey}) {
    const std::string text = ToStdString(CFBundleGetValueForInfoDictionaryKey(bundle, key));
    std::string version;
    for (const std::string& component : GStringUtils::OSTokenizeString(text, ". \t\r\n")) {
      if (!version.empty()) version += '.';
      version += component;
    }
    if (!version.empty()) {
      outVersion = version;
      return CoreErrorCodes::kSuccess;
    }
  }
  return CoreErrorCodes::kNotFound;
}
