#pragma once

#include <CoreFoundation/CoreFoundation.h>

#include "Memory/RetainPtr.h"

/// Whether the object may be changed: a mutable string, array, dictionary, set or data. False for NULL.
bool IsMutableCF(CFTypeRef object);

/// Which type a reference type stands for.
template <typename T>
struct CFTypeTraits;

#define HORNBEAM_CF_TYPE_TRAITS(Type, Mutable)             \
  template <>                                              \
  struct CFTypeTraits<Type##Ref> {                         \
    static CFTypeID TypeID() { return Type##GetTypeID(); } \
    static constexpr bool kMutable = Mutable;              \
  };
#define HORNBEAM_CF_MUTABLE_TYPE_TRAITS(Name)                  \
  HORNBEAM_CF_TYPE_TRAITS(CF##Name, false)                     \
  template <>                                                  \
  struct CFTypeTraits<CFMutable##Name##Ref> {                  \
    static CFTypeID TypeID() { return CF##Name##GetTypeID(); } \
    static constexpr bool kMutable = true;                     \
  };
HORNBEAM_CF_MUTABLE_TYPE_TRAITS(String)
HORNBEAM_CF_MUTABLE_TYPE_TRAITS(Array)
HORNBEAM_CF_MUTABLE_TYPE_TRAITS(Dictionary)
HORNBEAM_CF_MUTABLE_TYPE_TRAITS(Set)
HORNBEAM_CF_MUTABLE_TYPE_TRAITS(Data)
HORNBEAM_CF_TYPE_TRAITS(CFNumber, false)
HORNBEAM_CF_TYPE_TRAITS(CFBoolean, false)
HORNBEAM_CF_TYPE_TRAITS(CFNull, false)
HORNBEAM_CF_TYPE_TRAITS(CFDate, false)
HORNBEAM_CF_TYPE_TRAITS(CFURL, false)
HORNBEAM_CF_TYPE_TRAITS(CFUUID, false)
HORNBEAM_CF_TYPE_TRAITS(CFError, false)
HORNBEAM_CF_TYPE_TRAITS(CFBundle, false)
HORNBEAM_CF_TYPE_TRAITS(CFRunLoop, false)
HORNBEAM_CF_TYPE_TRAITS(CFRunLoopTimer, false)
#undef HORNBEAM_CF_MUTABLE_TYPE_TRAITS
#undef HORNBEAM_CF_TYPE_TRAITS

/// The object as a T when it is one, else null; a mutable T takes only an object that may be changed. Adds no
/// reference: retainCF(dynamicCF<T>(value)) does.
template <typename T>
[[nodiscard]] T dynamicCF(CFTypeRef object) {
  if (object == nullptr || CFGetTypeID(object) != CFTypeTraits<T>::TypeID()) return nullptr;
  if (CFTypeTraits<T>::kMutable && !IsMutableCF(object)) return nullptr;
  return static_cast<T>(const_cast<void*>(object));
}
