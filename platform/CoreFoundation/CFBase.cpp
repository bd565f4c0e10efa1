#include "CoreFoundation/CFBase.h"

#include "CoreFoundation/CFRuntime.h"
#include "CoreFoundation/CFStringObject.h"

const CFAllocatorRef kCFAllocatorDefault = nullptr;

namespace {

const cf::Object* AsObject(CFTypeRef reference) {
  const auto* object = static_cast<const cf::Object*>(reference);
  if (object != nullptr) object->CheckAlive();
  return object;
}

constexpr int kDescribedLevels = 8;

}  // namespace

CFTypeRef CFRetain(CFTypeRef object) {
  if (object != nullptr) static_cast<const cf::Object*>(object)->Retain();
  return object;
}

void CFRelease(CFTypeRef object) {
  if (object != nullptr) static_cast<const cf::Object*>(object)->Release();
}

CFIndex CFGetRetainCount(CFTypeRef reference) {
  const cf::Object* object = AsObject(reference);
  return object == nullptr ? 0 : object->Count();
}

CFTypeID CFGetTypeID(CFTypeRef reference) {
  const cf::Object* object = AsObject(reference);
  return object == nullptr ? cf::kNoType : object->Type();
}

Boolean CFEqual(CFTypeRef reference1, CFTypeRef reference2) {
  const cf::Object* object1 = AsObject(reference1);
  const cf::Object* object2 = AsObject(reference2);
  if (object1 == object2) return true;
  if (object1 == nullptr || object2 == nullptr || object1->Type() != object2->Type()) return false;
  return object1->Equals(*object2);
}

CFHashCode CFHash(CFTypeRef reference) {
  const cf::Object* object = AsObject(reference);
  return object == nullptr ? 0 : object->Hash();
}

CFStringRef CFCopyTypeIDDescription(CFTypeID type) {
  const char* name = cf::TypeName(type);
  return name == nullptr ? nullptr : cf::NewString(name);
}

CFStringRef CFCopyDescription(CFTypeRef reference) {
  const cf::Object* object = AsObject(reference);
  return object == nullptr ? nullptr : cf::NewString(object->Describe(kDescribedLevels));
}
