#include "CoreFoundation/CFNull.h"

#include "CoreFoundation/CFRuntime.h"

struct __CFNull final : cf::Object {
  __CFNull() : Object(cf::kNullType) { MakeConstant(); }
  std::string Describe(int) const override { return "<null>"; }
};

const CFNullRef kCFNull = new __CFNull;

CFTypeID CFNullGetTypeID() {
  return cf::kNullType;
}
