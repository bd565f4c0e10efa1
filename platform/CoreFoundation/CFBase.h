#pragma once

#include <cstdint>

/// The base of all CoreFoundation types: scalar names, references, counts, equality.

#define CF_EXTERN_C_BEGIN extern "C" {
#define CF_EXTERN_C_END }

using Boolean = unsigned char;
using UInt8 = std::uint8_t;
using SInt8 = std::int8_t;
using UInt16 = std::uint16_t;
using SInt16 = std::int16_t;
using UInt32 = std::uint32_t;
using SInt32 = std::int32_t;
using UInt64 = std::uint64_t;
using SInt64 = std::int64_t;
using Float32 = float;
using Float64 = double;
using UniChar = UInt16;
using UTF32Char = UInt32;

using CFIndex = long;
using CFTypeID = unsigned long;
using CFOptionFlags = unsigned long;
using CFHashCode = unsigned long;

/// A reference to any object. Every CF…Ref converts to it.
using CFTypeRef = const void*;
/// A reference to a string, number, boolean, date, data, array or dictionary of such.
using CFPropertyListRef = CFTypeRef;
using CFAllocatorRef = const struct __CFAllocator*;
using CFStringRef = const struct __CFString*;
using CFMutableStringRef = struct __CFString*;
using CFArrayRef = const struct __CFArray*;
using CFMutableArrayRef = struct __CFArray*;
using CFDictionaryRef = const struct __CFDictionary*;
using CFMutableDictionaryRef = struct __CFDictionary*;
using CFLocaleRef = const struct __CFLocale*;

struct CFRange {
  CFIndex location;
  CFIndex length;
};

/// `length` 0 from `location` kCFNotFound is the empty answer of a search.
constexpr CFRange CFRangeMake(CFIndex location, CFIndex length) {
  return {location, length};
}

constexpr CFIndex kCFNotFound = -1;

enum CFComparisonResult : CFIndex {
  kCFCompareLessThan = -1,
  kCFCompareEqualTo = 0,
  kCFCompareGreaterThan = 1
};

/// Orders two values for a sort or a search; `context` is the caller's.
using CFComparatorFunction = CFComparisonResult (*)(const void* value1, const void* value2, void* context);

CF_EXTERN_C_BEGIN

/// NULL: the default allocator, the only one.
extern const CFAllocatorRef kCFAllocatorDefault;

/// Adds a reference and returns `object`. NULL gives NULL.
CFTypeRef CFRetain(CFTypeRef object);

/// Takes a reference away; with the last one the object is gone. NULL does nothing. Giving back a reference
/// that isn't there, or using an object that is gone, ends the program with a message where it is noticed:
/// always while the memory still shows it, and in debug builds also for the last few thousand objects freed.
void CFRelease(CFTypeRef object);

/// The count, for tests and logs. A constant answers a very large one. 0 for NULL.
CFIndex CFGetRetainCount(CFTypeRef object);

/// The type of the object, to be compared with the type's …GetTypeID(). 0 for NULL.
CFTypeID CFGetTypeID(CFTypeRef object);

/// Equality of value: objects of different types are never equal; two NULLs are.
Boolean CFEqual(CFTypeRef object1, CFTypeRef object2);

/// Equal objects have equal codes. A code is good for this process only.
CFHashCode CFHash(CFTypeRef object);

/// "CFString" and the like; NULL when there is no such type. The caller owns the result.
CFStringRef CFCopyTypeIDDescription(CFTypeID type);

/// A text for logs; its form may change. NULL for NULL. The caller owns the result.
CFStringRef CFCopyDescription(CFTypeRef object);

CF_EXTERN_C_END
