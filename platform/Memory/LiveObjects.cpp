#include "Memory/LiveObjects.h"

#include "CoreFoundation/CFRuntime.h"

std::map<std::string, long> LiveObjectCounts() {
  std::map<std::string, long> counts;
  for (CFTypeID type = cf::kNoType + 1; type < cf::kTypeCount; ++type) {
    const long count = cf::LiveCount(static_cast<cf::TypeNumber>(type));
    if (count != 0) counts[cf::TypeName(type)] = count;
  }
  return counts;
}
