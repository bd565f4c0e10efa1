#pragma once

#include <CoreFoundation/CFBase.h>

using CFNullRef = const struct __CFNull*;

CF_EXTERN_C_BEGIN

/// Stands for "no object" in containers; lives for ever.
extern const CFNullRef kCFNull;

CFTypeID CFNullGetTypeID();

CF_EXTERN_C_END
