#include "CoreFoundation/CFUUID.h"

#include <uuid/uuid.h>

#include <cstring>
#include <functional>
#include <string_view>

#include "CoreFoundation/CFRuntime.h"
#include "CoreFoundation/CFStringObject.h"

using cf::Cast;

static_assert(sizeof(CFUUIDBytes) == sizeof(uuid_t));

struct __CFUUID final : cf::Object {
  static constexpr cf::TypeNumber kType = cf::kUUIDType;

  explicit __CFUUID(const CFUUIDBytes& content) : Object(kType), bytes(content) {}

  bool Equals(const Object& other) const override {
    return std::memcmp(&bytes, &static_cast<const __CFUUID&>(other).bytes, sizeof bytes) == 0;
  }
  CFHashCode Hash() const override {
    return std::hash<std::string_view>()({reinterpret_cast<const char*>(&bytes), sizeof bytes});
  }
  std::string Describe(int) const override {
    uuid_t form;
    std::memcpy(form, &bytes, sizeof form);
    char text[UUID_STR_LEN];
    uuid_unparse_upper(form, text);
    return text;
  }

  const CFUUIDBytes bytes;
};

namespace {

CFUUIDRef Make(const uuid_t form) {
  CFUUIDBytes bytes;
  std::memcpy(&bytes, form, sizeof bytes);
  return new __CFUUID(bytes);
}

}  // namespace

CFTypeID CFUUIDGetTypeID() {
  return cf::kUUIDType;
}

CFUUIDRef CFUUIDCreate(CFAllocatorRef) {
  uuid_t form;
  uuid_generate_random(form);
  return Make(form);
}

CFUUIDRef CFUUIDCreateFromString(CFAllocatorRef, CFStringRef text) {
  const std::string utf8 = cf::ToUTF8(cf::TextOf(text));
  uuid_t form;
  if (utf8.size() != UUID_STR_LEN - 1 || uuid_parse(utf8.c_str(), form) != 0) return nullptr;
  return Make(form);
}

CFUUIDRef CFUUIDCreateFromUUIDBytes(CFAllocatorRef, CFUUIDBytes bytes) {
  return new __CFUUID(bytes);
}

CFStringRef CFUUIDCreateString(CFAllocatorRef, CFUUIDRef uuid) {
  const auto* source = Cast<__CFUUID>(uuid);
  return source == nullptr ? nullptr : cf::NewString(source->Describe(0));
}

CFUUIDBytes CFUUIDGetUUIDBytes(CFUUIDRef uuid) {
  const auto* source = Cast<__CFUUID>(uuid);
  return source == nullptr ? CFUUIDBytes{} : source->bytes;
}
