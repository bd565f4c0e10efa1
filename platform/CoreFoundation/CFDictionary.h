#pragma once

#include <CoreFoundation/CFBase.h>

/// Values by key, in the order they came in. With the kCFType… callbacks keys and values are objects, which
/// it retains; with NULL callbacks they are bare pointers, compared by address. A key must not change inside.

using CFDictionaryRetainCallBack = const void* (*)(CFAllocatorRef allocator, const void* value);
using CFDictionaryReleaseCallBack = void (*)(CFAllocatorRef allocator, const void* value);
using CFDictionaryCopyDescriptionCallBack = CFStringRef (*)(const void* value);
using CFDictionaryEqualCallBack = Boolean (*)(const void* value1, const void* value2);
using CFDictionaryHashCallBack = CFHashCode (*)(const void* value);
using CFDictionaryApplierFunction = void (*)(const void* key, const void* value, void* context);

struct CFDictionaryKeyCallBacks {
  CFIndex version;
  CFDictionaryRetainCallBack retain;
  CFDictionaryReleaseCallBack release;
  CFDictionaryCopyDescriptionCallBack copyDescription;
  CFDictionaryEqualCallBack equal;
  CFDictionaryHashCallBack hash;
};

struct CFDictionaryValueCallBacks {
  CFIndex version;
  CFDictionaryRetainCallBack retain;
  CFDictionaryReleaseCallBack release;
  CFDictionaryCopyDescriptionCallBack copyDescription;
  CFDictionaryEqualCallBack equal;
};

CF_EXTERN_C_BEGIN

extern const CFDictionaryKeyCallBacks kCFTypeDictionaryKeyCallBacks;
/// Keeps an immutable copy of each key, which must be a string.
extern const CFDictionaryKeyCallBacks kCFCopyStringDictionaryKeyCallBacks;
extern const CFDictionaryValueCallBacks kCFTypeDictionaryValueCallBacks;

CFTypeID CFDictionaryGetTypeID();

/// \name Making dictionaries. The caller owns the result.
/// @{

/// NULL when a key or value is NULL and the callbacks are those of objects, or `count` is below 0. Of equal
/// keys the first one counts.
CFDictionaryRef CFDictionaryCreate(CFAllocatorRef allocator, const void** keys, const void** values,
                                   CFIndex count, const CFDictionaryKeyCallBacks* keyCallBacks,
                                   const CFDictionaryValueCallBacks* valueCallBacks);
CFDictionaryRef CFDictionaryCreateCopy(CFAllocatorRef allocator, CFDictionaryRef dictionary);
/// `capacity` is a hint.
CFMutableDictionaryRef CFDictionaryCreateMutable(CFAllocatorRef allocator, CFIndex capacity,
                                                 const CFDictionaryKeyCallBacks* keyCallBacks,
                                                 const CFDictionaryValueCallBacks* valueCallBacks);
CFMutableDictionaryRef CFDictionaryCreateMutableCopy(CFAllocatorRef allocator, CFIndex capacity,
                                                     CFDictionaryRef dictionary);
/// @}

/// \name Reading. What is given is not the caller's.
/// @{

CFIndex CFDictionaryGetCount(CFDictionaryRef dictionary);
CFIndex CFDictionaryGetCountOfKey(CFDictionaryRef dictionary, const void* key);
CFIndex CFDictionaryGetCountOfValue(CFDictionaryRef dictionary, const void* value);
Boolean CFDictionaryContainsKey(CFDictionaryRef dictionary, const void* key);
Boolean CFDictionaryContainsValue(CFDictionaryRef dictionary, const void* value);
const void* CFDictionaryGetValue(CFDictionaryRef dictionary, const void* key);
/// `value` may be NULL, and is left as it is when the key isn't there.
Boolean CFDictionaryGetValueIfPresent(CFDictionaryRef dictionary, const void* key, const void** value);
/// Fills as many of each as CFDictionaryGetCount() says, in the same order. Either may be NULL.
void CFDictionaryGetKeysAndValues(CFDictionaryRef dictionary, const void** keys, const void** values);
/// The applier must not change the dictionary.
void CFDictionaryApplyFunction(CFDictionaryRef dictionary, CFDictionaryApplierFunction applier,
                               void* context);
/// @}

/// \name Changing. An immutable dictionary or a NULL object changes nothing.
/// @{

/// Only when the key isn't there yet.
void CFDictionaryAddValue(CFMutableDictionaryRef dictionary, const void* key, const void* value);
void CFDictionarySetValue(CFMutableDictionaryRef dictionary, const void* key, const void* value);
/// Only when the key is there.
void CFDictionaryReplaceValue(CFMutableDictionaryRef dictionary, const void* key, const void* value);
void CFDictionaryRemoveValue(CFMutableDictionaryRef dictionary, const void* key);
void CFDictionaryRemoveAllValues(CFMutableDictionaryRef dictionary);
/// @}

CF_EXTERN_C_END
