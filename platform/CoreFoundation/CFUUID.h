#pragma once

#include <CoreFoundation/CFBase.h>

using CFUUIDRef = const struct __CFUUID*;

struct CFUUIDBytes {
  UInt8 byte0, byte1, byte2, byte3, byte4, byte5, byte6, byte7;
  UInt8 byte8, byte9, byte10, byte11, byte12, byte13, byte14, byte15;
};

CF_EXTERN_C_BEGIN

CFTypeID CFUUIDGetTypeID();

/// A fresh one, by random. The caller owns each result.
CFUUIDRef CFUUIDCreate(CFAllocatorRef allocator);
/// NULL when the text isn't of the form of CFUUIDCreateString(); small letters are taken too.
CFUUIDRef CFUUIDCreateFromString(CFAllocatorRef allocator, CFStringRef text);
CFUUIDRef CFUUIDCreateFromUUIDBytes(CFAllocatorRef allocator, CFUUIDBytes bytes);
/// "68753A44-4D6F-1226-9C60-0050E4C00067": capital letters.
CFStringRef CFUUIDCreateString(CFAllocatorRef allocator, CFUUIDRef uuid);
CFUUIDBytes CFUUIDGetUUIDBytes(CFUUIDRef uuid);

CF_EXTERN_C_END
