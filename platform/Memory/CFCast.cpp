#include "Memory/CFCast.h"

#include "CoreFoundation/CFRuntime.h"

bool IsMutableCF(CFTypeRef object) {
  return object != nullptr && static_cast<const cf::Object*>(object)->IsMutable();
}
