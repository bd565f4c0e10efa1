#include "CoreFoundation/CFBoolean.h"

#include "CoreFoundation/CFRuntime.h"

struct __CFBoolean final : cf::Object {
  static constexpr cf::TypeNumber kType = cf::kBooleanType;

  explicit __CFBoolean(bool isTrue) : Object(kType), value(isTrue) { MakeConstant(); }
  CFHashCode Hash() const override { return value ? 1 : 0; }
  std::string Describe(int) const override { return value ? "true" : "false"; }

  const bool value;
};

const CFBooleanRef kCFBooleanTrue = new __CFBoolean(true);
const CFBooleanRef kCFBooleanFalse = new __CFBoolean(false);

CFTypeID CFBooleanGetTypeID() {
  return cf::kBooleanType;
}

Boolean CFBooleanGetValue(CFBooleanRef boolean) {
  const auto* object = cf::Cast<__CFBoolean>(boolean);
  return object != nullptr && object->value;
}
