#pragma once

#include <CoreFoundation/CFBase.h>

/// An ordered list. With kCFTypeArrayCallBacks its values are objects, which it retains; with NULL callbacks
/// they are bare pointers, compared by address.

using CFArrayRetainCallBack = const void* (*)(CFAllocatorRef allocator, const void* value);
using CFArrayReleaseCallBack = void (*)(CFAllocatorRef allocator, const void* value);
using CFArrayCopyDescriptionCallBack = CFStringRef (*)(const void* value);
using CFArrayEqualCallBack = Boolean (*)(const void* value1, const void* value2);
using CFArrayApplierFunction = void (*)(const void* value, void* context);

struct CFArrayCallBacks {
  CFIndex version;
  CFArrayRetainCallBack retain;
  CFArrayReleaseCallBack release;
  CFArrayCopyDescriptionCallBack copyDescription;
  CFArrayEqualCallBack equal;
};

CF_EXTERN_C_BEGIN

extern const CFArrayCallBacks kCFTypeArrayCallBacks;

CFTypeID CFArrayGetTypeID();

/// \name Making arrays. The caller owns the result.
/// @{

/// NULL when a value is NULL and the callbacks are those of objects, or `count` is below 0.
CFArrayRef CFArrayCreate(CFAllocatorRef allocator, const void** values, CFIndex count,
                         const CFArrayCallBacks* callBacks);
CFArrayRef CFArrayCreateCopy(CFAllocatorRef allocator, CFArrayRef array);
/// `capacity` is a hint.
CFMutableArrayRef CFArrayCreateMutable(CFAllocatorRef allocator, CFIndex capacity,
                                       const CFArrayCallBacks* callBacks);
CFMutableArrayRef CFArrayCreateMutableCopy(CFAllocatorRef allocator, CFIndex capacity, CFArrayRef array);
/// @}

/// \name Reading
/// @{

CFIndex CFArrayGetCount(CFArrayRef array);
/// Not the caller's; NULL when the index is out of bounds.
const void* CFArrayGetValueAtIndex(CFArrayRef array, CFIndex index);
/// Copies the values of `range`, which are not the caller's; nothing when it isn't wholly within the array.
void CFArrayGetValues(CFArrayRef array, CFRange range, const void** values);
CFIndex CFArrayGetCountOfValue(CFArrayRef array, CFRange range, const void* value);
Boolean CFArrayContainsValue(CFArrayRef array, CFRange range, const void* value);
/// kCFNotFound when there is none.
CFIndex CFArrayGetFirstIndexOfValue(CFArrayRef array, CFRange range, const void* value);
CFIndex CFArrayGetLastIndexOfValue(CFArrayRef array, CFRange range, const void* value);
void CFArrayApplyFunction(CFArrayRef array, CFRange range, CFArrayApplierFunction applier, void* context);
/// Where `value` stands, or should be put, in a sorted range; at most the range's end.
CFIndex CFArrayBSearchValues(CFArrayRef array, CFRange range, const void* value,
                             CFComparatorFunction comparator, void* context);
/// @}

/// \name Changing. An immutable array, an index out of bounds or a NULL object changes nothing.
/// @{

void CFArrayAppendValue(CFMutableArrayRef array, const void* value);
void CFArrayAppendArray(CFMutableArrayRef array, CFArrayRef appended, CFRange range);
/// The index may be the count.
void CFArrayInsertValueAtIndex(CFMutableArrayRef array, CFIndex index, const void* value);
/// The index may be the count, which appends.
void CFArraySetValueAtIndex(CFMutableArrayRef array, CFIndex index, const void* value);
void CFArrayRemoveValueAtIndex(CFMutableArrayRef array, CFIndex index);
void CFArrayRemoveAllValues(CFMutableArrayRef array);
void CFArrayReplaceValues(CFMutableArrayRef array, CFRange range, const void** values, CFIndex count);
void CFArrayExchangeValuesAtIndices(CFMutableArrayRef array, CFIndex index1, CFIndex index2);
/// A stable merge sort. The comparator need not be consistent: it only ever gets two values of the array, at
/// most count * log2(count) times, and whatever it answers, each value is there afterwards once. It must not
/// change the array.
void CFArraySortValues(CFMutableArrayRef array, CFRange range, CFComparatorFunction comparator,
                       void* context);
/// @}

CF_EXTERN_C_END
