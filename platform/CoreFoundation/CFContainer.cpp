#include "CoreFoundation/CFContainer.h"

#include <cstdio>

#include "CoreFoundation/CFRuntime.h"
#include "CoreFoundation/CFStringObject.h"
#include "Memory/RetainPtr.h"

namespace cf {

const void* RetainValue(CFAllocatorRef, const void* value) {
  return CFRetain(value);
}

void ReleaseValue(CFAllocatorRef, const void* value) {
  CFRelease(value);
}

std::string DescribeValue(CFStringRef (*copyDescription)(const void*), const void* value, int depth) {
  if (depth <= 0) return "...";
  if (value != nullptr && copyDescription == &CFCopyDescription) {
    return static_cast<const Object*>(value)->Describe(depth - 1);
  }
  if (copyDescription != nullptr) return ToUTF8(TextOf(adoptCF(copyDescription(value)).get()));
  char text[32];
  std::snprintf(text, sizeof text, "%p", value);
  return text;
}

}  // namespace cf
