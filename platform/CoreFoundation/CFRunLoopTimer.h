#pragma once

#include <CoreFoundation/CFRunLoop.h>

/// A timer of a run loop. It is set by the wall clock and then runs by the monotonic one, so a corrected wall
/// clock neither delays nor hastens it. A repeating timer that missed its time fires once and goes on at the
/// next time of its own rhythm. It doesn't fire again while its callback runs.

using CFRunLoopTimerCallBack = void (*)(CFRunLoopTimerRef timer, void* info);

/// `info` is retained when the timer is made and released when it is invalidated, where functions are given.
struct CFRunLoopTimerContext {
  CFIndex version;
  void* info;
  const void* (*retain)(const void* info);
  void (*release)(const void* info);
  CFStringRef (*copyDescription)(const void* info);
};

CF_EXTERN_C_BEGIN

CFTypeID CFRunLoopTimerGetTypeID();

/// \param fireDate  The first time; one in the past means at once.
/// \param interval  Seconds between two times; 0 or less: it fires once and is then invalid.
/// \param flags, order  Must be 0.
/// \param context  Copied. May be NULL.
/// \return NULL without a callback. The caller owns the result.
CFRunLoopTimerRef CFRunLoopTimerCreate(CFAllocatorRef allocator, CFAbsoluteTime fireDate,
                                       CFTimeInterval interval, CFOptionFlags flags, CFIndex order,
                                       CFRunLoopTimerCallBack callBack, CFRunLoopTimerContext* context);
/// Takes it from its loop; it never fires again. A callback that runs just now runs to its end, and
/// the context is released after it.
void CFRunLoopTimerInvalidate(CFRunLoopTimerRef timer);
Boolean CFRunLoopTimerIsValid(CFRunLoopTimerRef timer);
/// 0 for one that fires once.
CFTimeInterval CFRunLoopTimerGetInterval(CFRunLoopTimerRef timer);
CFAbsoluteTime CFRunLoopTimerGetNextFireDate(CFRunLoopTimerRef timer);
void CFRunLoopTimerSetNextFireDate(CFRunLoopTimerRef timer, CFAbsoluteTime fireDate);
Boolean CFRunLoopTimerDoesRepeat(CFRunLoopTimerRef timer);

CF_EXTERN_C_END
