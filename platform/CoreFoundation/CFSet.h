#pragma once

#include <CoreFoundation/CFBase.h>

/// Distinct values in no order. With kCFTypeSetCallBacks they are objects, which it retains; with NULL
/// callbacks bare pointers. A value must not change while it is in.

using CFSetRef = const struct __CFSet*;
using CFMutableSetRef = struct __CFSet*;

using CFSetRetainCallBack = const void* (*)(CFAllocatorRef allocator, const void* value);
using CFSetReleaseCallBack = void (*)(CFAllocatorRef allocator, const void* value);
using CFSetCopyDescriptionCallBack = CFStringRef (*)(const void* value);
using CFSetEqualCallBack = Boolean (*)(const void* value1, const void* value2);
using CFSetHashCallBack = CFHashCode (*)(const void* value);
using CFSetApplierFunction = void (*)(const void* value, void* context);

struct CFSetCallBacks {
  CFIndex version;
  CFSetRetainCallBack retain;
  CFSetReleaseCallBack release;
  CFSetCopyDescriptionCallBack copyDescription;
  CFSetEqualCallBack equal;
  CFSetHashCallBack hash;
};

CF_EXTERN_C_BEGIN

extern const CFSetCallBacks kCFTypeSetCallBacks;

CFTypeID CFSetGetTypeID();

/// The caller owns the result. NULL when a value is NULL and the callbacks are those of objects.
CFSetRef CFSetCreate(CFAllocatorRef allocator, const void** values, CFIndex count,
                     const CFSetCallBacks* callBacks);
CFSetRef CFSetCreateCopy(CFAllocatorRef allocator, CFSetRef set);
CFMutableSetRef CFSetCreateMutable(CFAllocatorRef allocator, CFIndex capacity,
                                   const CFSetCallBacks* callBacks);
CFMutableSetRef CFSetCreateMutableCopy(CFAllocatorRef allocator, CFIndex capacity, CFSetRef set);

CFIndex CFSetGetCount(CFSetRef set);
Boolean CFSetContainsValue(CFSetRef set, const void* value);
/// The value in the set that equals `value`, or NULL.
const void* CFSetGetValue(CFSetRef set, const void* value);
/// Fills as many as CFSetGetCount() says.
void CFSetGetValues(CFSetRef set, const void** values);
void CFSetApplyFunction(CFSetRef set, CFSetApplierFunction applier, void* context);

/// Only when it isn't there yet.
void CFSetAddValue(CFMutableSetRef set, const void* value);
/// Takes the place of the equal one.
void CFSetSetValue(CFMutableSetRef set, const void* value);
void CFSetRemoveValue(CFMutableSetRef set, const void* value);
void CFSetRemoveAllValues(CFMutableSetRef set);

CF_EXTERN_C_END
