#pragma once

/// The CoreFoundation subset that the system stands on, under Apple's public names and ownership rules: a
/// function with Create or Copy in its name gives the caller a reference, one with Get doesn't, and a
/// container retains what is put in.
///
/// What holds for every function here:
///  - Counts are atomic. An object that nobody changes may be read from any thread; one that somebody changes
///    needs the caller's own lock.
///  - A NULL or wrongly typed argument gives a neutral result (NULL, 0, false, an empty range) and changes
///    nothing. A range is cut to the object it is meant for.
///  - The allocator argument is there for the signature's sake: memory always comes from the C++ heap.
///  - Nothing throws but for want of memory.
#include <CoreFoundation/CFArray.h>
#include <CoreFoundation/CFBase.h>
#include <CoreFoundation/CFBoolean.h>
#include <CoreFoundation/CFBundle.h>
#include <CoreFoundation/CFData.h>
#include <CoreFoundation/CFDate.h>
#include <CoreFoundation/CFDictionary.h>
#include <CoreFoundation/CFError.h>
#include <CoreFoundation/CFNull.h>
#include <CoreFoundation/CFNumber.h>
#include <CoreFoundation/CFPropertyList.h>
#include <CoreFoundation/CFRunLoop.h>
#include <CoreFoundation/CFRunLoopTimer.h>
#include <CoreFoundation/CFSet.h>
#include <CoreFoundation/CFString.h>
#include <CoreFoundation/CFURL.h>
#include <CoreFoundation/CFUUID.h>
