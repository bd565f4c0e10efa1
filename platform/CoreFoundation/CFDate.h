#pragma once

#include <CoreFoundation/CFBase.h>

/// Seconds since 2001-01-01T00:00:00Z.
using CFTimeInterval = double;
using CFAbsoluteTime = CFTimeInterval;
using CFDateRef = const struct __CFDate*;

CF_EXTERN_C_BEGIN

extern const CFTimeInterval kCFAbsoluteTimeIntervalSince1970;

/// Now, by the wall clock.
CFAbsoluteTime CFAbsoluteTimeGetCurrent();

CFTypeID CFDateGetTypeID();
/// The caller owns the result.
CFDateRef CFDateCreate(CFAllocatorRef allocator, CFAbsoluteTime at);
CFAbsoluteTime CFDateGetAbsoluteTime(CFDateRef date);
CFTimeInterval CFDateGetTimeIntervalSinceDate(CFDateRef date, CFDateRef otherDate);
CFComparisonResult CFDateCompare(CFDateRef date, CFDateRef otherDate, void* context);

CF_EXTERN_C_END
