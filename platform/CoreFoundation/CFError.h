#pragma once

#include <CoreFoundation/CFBase.h>

using CFErrorRef = struct __CFError*;
using CFErrorDomain = CFStringRef;

CF_EXTERN_C_BEGIN

extern const CFErrorDomain kCFErrorDomainPOSIX;
extern const CFErrorDomain kCFErrorDomainCocoa;

/// Keys of the user information: what happened, for users and for logs.
extern const CFStringRef kCFErrorLocalizedDescriptionKey;
extern const CFStringRef kCFErrorDescriptionKey;

CFTypeID CFErrorGetTypeID();

/// `userInfo` may be NULL. The caller owns the result.
CFErrorRef CFErrorCreate(CFAllocatorRef allocator, CFErrorDomain domain, CFIndex code,
                         CFDictionaryRef userInfo);
CFErrorDomain CFErrorGetDomain(CFErrorRef error);
CFIndex CFErrorGetCode(CFErrorRef error);
/// Never NULL for an error. The caller owns the result.
CFDictionaryRef CFErrorCopyUserInfo(CFErrorRef error);
/// The localized description, else the description, else domain and code. The caller owns the result.
CFStringRef CFErrorCopyDescription(CFErrorRef error);

CF_EXTERN_C_END
