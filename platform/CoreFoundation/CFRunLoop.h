#pragma once

#include <CoreFoundation/CFBase.h>
#include <CoreFoundation/CFDate.h>

/// Each thread's loop, which waits (by poll) and fires timers on its thread.
///
/// Thread: a loop runs on its own thread only; all else here may be called from any.

using CFRunLoopRef = struct __CFRunLoop*;
using CFRunLoopTimerRef = struct __CFRunLoopTimer*;
using CFRunLoopMode = CFStringRef;

enum CFRunLoopRunResult : SInt32 {
  /// The mode has no timers (left).
  kCFRunLoopRunFinished = 1,
  kCFRunLoopRunStopped = 2,
  kCFRunLoopRunTimedOut = 3,
  kCFRunLoopRunHandledSource = 4
};

CF_EXTERN_C_BEGIN

extern const CFRunLoopMode kCFRunLoopDefaultMode;
/// Not a mode to run in: what is added for it belongs to every common mode. The default mode is one.
extern const CFRunLoopMode kCFRunLoopCommonModes;

CFTypeID CFRunLoopGetTypeID();

/// This thread's, made on first use; it goes with the thread unless somebody retains it. Not the caller's.
CFRunLoopRef CFRunLoopGetCurrent();
CFRunLoopRef CFRunLoopGetMain();

/// Runs this thread's loop in the default mode until it is stopped or has no timers left.
void CFRunLoopRun();

/// Runs this thread's loop in one mode.
///
/// \param seconds  For how long; 0 fires what is due and returns.
/// \param returnAfterSourceHandled  Returns also when it has fired timers, with kCFRunLoopRunHandledSource:
///        a timer is the only source that there is.
CFRunLoopRunResult CFRunLoopRunInMode(CFRunLoopMode mode, CFTimeInterval seconds,
                                      Boolean returnAfterSourceHandled);

/// Ends the innermost run of the loop; nothing when it doesn't run.
void CFRunLoopStop(CFRunLoopRef loop);
/// Makes a waiting loop look at its timers again.
void CFRunLoopWakeUp(CFRunLoopRef loop);
Boolean CFRunLoopIsWaiting(CFRunLoopRef loop);
/// The mode that runs; NULL when none does. The caller owns the result.
CFRunLoopMode CFRunLoopCopyCurrentMode(CFRunLoopRef loop);
void CFRunLoopAddCommonMode(CFRunLoopRef loop, CFRunLoopMode mode);

/// The loop retains the timer until it is removed or invalidated. A timer belongs to one loop only: adding it
/// to another does nothing.
void CFRunLoopAddTimer(CFRunLoopRef loop, CFRunLoopTimerRef timer, CFRunLoopMode mode);
void CFRunLoopRemoveTimer(CFRunLoopRef loop, CFRunLoopTimerRef timer, CFRunLoopMode mode);
Boolean CFRunLoopContainsTimer(CFRunLoopRef loop, CFRunLoopTimerRef timer, CFRunLoopMode mode);

CF_EXTERN_C_END
