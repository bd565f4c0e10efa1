#pragma once

#include <CoreFoundation/CFBase.h>

/// A number that keeps what it was made of: an integer stays exact, a float stays a float.

using CFNumberRef = const struct __CFNumber*;

enum CFNumberType : CFIndex {
  kCFNumberSInt8Type = 1,
  kCFNumberSInt16Type = 2,
  kCFNumberSInt32Type = 3,
  kCFNumberSInt64Type = 4,
  kCFNumberFloat32Type = 5,
  kCFNumberFloat64Type = 6,
  kCFNumberCharType = 7,
  kCFNumberShortType = 8,
  kCFNumberIntType = 9,
  kCFNumberLongType = 10,
  kCFNumberLongLongType = 11,
  kCFNumberFloatType = 12,
  kCFNumberDoubleType = 13,
  kCFNumberCFIndexType = 14,
  kCFNumberNSIntegerType = 15,
  kCFNumberCGFloatType = 16,
  kCFNumberMaxType = 16
};

CF_EXTERN_C_BEGIN

CFTypeID CFNumberGetTypeID();

/// \param value  Points to one value of the C type that `type` names.
/// \return The caller's. NULL for an unknown type.
CFNumberRef CFNumberCreate(CFAllocatorRef allocator, CFNumberType type, const void* value);

/// The sized type (kCFNumberSInt32Type for kCFNumberIntType and so on); 0 for no number.
CFNumberType CFNumberGetType(CFNumberRef number);
CFIndex CFNumberGetByteSize(CFNumberRef number);
Boolean CFNumberIsFloatType(CFNumberRef number);

/// Stores the number as `type` in `value`. Returns whether it is still the same number; when it doesn't fit,
/// the nearest value that does is stored (NaN as integer: 0). Nothing is stored for no number or an unknown
/// type.
Boolean CFNumberGetValue(CFNumberRef number, CFNumberType type, void* value);

/// By value, whatever the types; a NaN comes first.
CFComparisonResult CFNumberCompare(CFNumberRef number1, CFNumberRef number2, void* context);

CF_EXTERN_C_END
