#pragma once

#include <CoreFoundation/CFBase.h>

using CFBooleanRef = const struct __CFBoolean*;

CF_EXTERN_C_BEGIN

/// The two values there are; both live for ever.
extern const CFBooleanRef kCFBooleanTrue;
extern const CFBooleanRef kCFBooleanFalse;

CFTypeID CFBooleanGetTypeID();

/// False for anything but kCFBooleanTrue.
Boolean CFBooleanGetValue(CFBooleanRef boolean);

CF_EXTERN_C_END
