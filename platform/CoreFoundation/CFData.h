#pragma once

#include <CoreFoundation/CFBase.h>

using CFDataRef = const struct __CFData*;
using CFMutableDataRef = struct __CFData*;

CF_EXTERN_C_BEGIN

CFTypeID CFDataGetTypeID();

/// Copies the bytes. NULL when `length` is below 0, or `bytes` is NULL with a length. The caller owns the
/// result.
CFDataRef CFDataCreate(CFAllocatorRef allocator, const UInt8* bytes, CFIndex length);
CFDataRef CFDataCreateCopy(CFAllocatorRef allocator, CFDataRef data);
/// `capacity` is a hint.
CFMutableDataRef CFDataCreateMutable(CFAllocatorRef allocator, CFIndex capacity);
CFMutableDataRef CFDataCreateMutableCopy(CFAllocatorRef allocator, CFIndex capacity, CFDataRef data);

CFIndex CFDataGetLength(CFDataRef data);
/// Good until the data changes or goes. Never NULL for a data object, also of length 0.
const UInt8* CFDataGetBytePtr(CFDataRef data);
/// NULL for immutable data.
UInt8* CFDataGetMutableBytePtr(CFMutableDataRef data);
/// Copies what of `range` lies within the data.
void CFDataGetBytes(CFDataRef data, CFRange range, UInt8* buffer);

/// New bytes are 0.
void CFDataSetLength(CFMutableDataRef data, CFIndex length);
void CFDataIncreaseLength(CFMutableDataRef data, CFIndex extraLength);
void CFDataAppendBytes(CFMutableDataRef data, const UInt8* bytes, CFIndex length);
void CFDataReplaceBytes(CFMutableDataRef data, CFRange range, const UInt8* bytes, CFIndex length);
void CFDataDeleteBytes(CFMutableDataRef data, CFRange range);

CF_EXTERN_C_END
