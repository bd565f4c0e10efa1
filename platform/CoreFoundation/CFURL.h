#pragma once

#include <CoreFoundation/CFBase.h>

/// The place of a file or folder. A path is bytes to the file system, so a URL holds bytes; only the
/// functions that give a CFString need them to be UTF-8.

using CFURLRef = const struct __CFURL*;

enum CFURLPathStyle : CFIndex {
  kCFURLPOSIXPathStyle = 0,
  kCFURLHFSPathStyle = 1,
  kCFURLWindowsPathStyle = 2
};

CF_EXTERN_C_BEGIN

CFTypeID CFURLGetTypeID();

/// \name Making URLs. The caller owns the result.
/// @{

/// Only the POSIX style is known; others give NULL, as does an empty path. A relative path is relative to the
/// working folder of this moment.
CFURLRef CFURLCreateWithFileSystemPath(CFAllocatorRef allocator, CFStringRef path, CFURLPathStyle style,
                                       Boolean isDirectory);
CFURLRef CFURLCreateFromFileSystemRepresentation(CFAllocatorRef allocator, const UInt8* path, CFIndex length,
                                                 Boolean isDirectory);
/// A "file:" URL of RFC 8089, with an empty host or "localhost"; NULL for any other text. `base` must be
/// NULL.
CFURLRef CFURLCreateWithString(CFAllocatorRef allocator, CFStringRef text, CFURLRef base);
CFURLRef CFURLCopyAbsoluteURL(CFURLRef url);
CFURLRef CFURLCreateCopyAppendingPathComponent(CFAllocatorRef allocator, CFURLRef url, CFStringRef component,
                                               Boolean isDirectory);
CFURLRef CFURLCreateCopyDeletingLastPathComponent(CFAllocatorRef allocator, CFURLRef url);
/// @}

/// The path without a "/" at its end, with a zero behind it. False, with the first byte 0, when it doesn't
/// fit.
///
/// \param resolveAgainstBase  Whether a relative path is made absolute.
Boolean CFURLGetFileSystemRepresentation(CFURLRef url, Boolean resolveAgainstBase, UInt8* buffer,
                                         CFIndex bufferSize);
/// The path as given, without a "/" at its end. NULL when it isn't UTF-8. The caller owns the result.
CFStringRef CFURLCopyFileSystemPath(CFURLRef url, CFURLPathStyle style);
/// "file:///…" with percent escapes, a folder with "/" at its end. Not the caller's.
CFStringRef CFURLGetString(CFURLRef url);
/// The caller owns the result; NULL when there is none.
CFStringRef CFURLCopyLastPathComponent(CFURLRef url);
CFStringRef CFURLCopyPathExtension(CFURLRef url);
Boolean CFURLHasDirectoryPath(CFURLRef url);

CF_EXTERN_C_END
