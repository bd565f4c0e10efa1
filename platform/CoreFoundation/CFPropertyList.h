#pragma once

#include <CoreFoundation/CFBase.h>
#include <CoreFoundation/CFData.h>
#include <CoreFoundation/CFError.h>

/// Property lists in Apple's published XML format, version 1.0 ("-//Apple//DTD PLIST 1.0//EN").
///
/// Written: UTF-8, a tab an indent, keys sorted by code points, data in lines of at most 76 columns (a tab
/// counts 8). A number is what it was made of: <integer> or <real>. A carriage return is written "&#13;",
/// since XML readers turn a bare one into a line feed. XML has no way to say the other control characters,
/// U+FFFE, U+FFFF or half a surrogate pair: a text with one is an error.
///
/// Read: UTF-8, or UTF-16 and UTF-32 by their byte order mark or shape, also ISO-8859-1 when declared. Entity
/// definitions are an error, so nothing can grow when expanded. More than 512 levels of containers are an
/// error, both ways. Of equal keys the last one counts. Any bytes give a list or an error.

enum CFPropertyListFormat : CFIndex {
  kCFPropertyListOpenStepFormat = 1,
  kCFPropertyListXMLFormat_v1_0 = 100,
  kCFPropertyListBinaryFormat_v1_0 = 200
};

/// What of a list read or copied may be changed afterwards.
constexpr CFOptionFlags kCFPropertyListImmutable = 0;
constexpr CFOptionFlags kCFPropertyListMutableContainers = 1;
/// Also strings and data; keys stay immutable.
constexpr CFOptionFlags kCFPropertyListMutableContainersAndLeaves = 2;

/// Codes of the errors, in kCFErrorDomainCocoa; the description tells the offset, or the path of keys.
constexpr CFIndex kCFPropertyListReadCorruptError = 3840;
/// Not XML: a binary list, say.
constexpr CFIndex kCFPropertyListReadUnknownVersionError = 3841;
constexpr CFIndex kCFPropertyListReadStreamError = 3842;
/// An object that isn't of the format, a key that isn't a string, or a text that XML can't say.
constexpr CFIndex kCFPropertyListWriteStreamError = 3851;

CF_EXTERN_C_BEGIN

/// \param format  kCFPropertyListXMLFormat_v1_0; others are a write error.
/// \param error  Receives an error that the caller owns; untouched on success. May be NULL.
/// \return NULL on failure. The caller owns the result.
CFDataRef CFPropertyListCreateData(CFAllocatorRef allocator, CFPropertyListRef list,
                                   CFPropertyListFormat format, CFOptionFlags options, CFErrorRef* error);
/// As above, without a reason.
CFDataRef CFPropertyListCreateXMLData(CFAllocatorRef allocator, CFPropertyListRef list);

/// \param format  Receives the format found. May be NULL.
/// \param error  As above.
CFPropertyListRef CFPropertyListCreateWithData(CFAllocatorRef allocator, CFDataRef data,
                                               CFOptionFlags options, CFPropertyListFormat* format,
                                               CFErrorRef* error);
/// The older form: `errorString` receives the error's description, the caller's, or NULL. May be NULL.
CFPropertyListRef CFPropertyListCreateFromXMLData(CFAllocatorRef allocator, CFDataRef data,
                                                  CFOptionFlags options, CFStringRef* errorString);

/// A copy of the whole tree. NULL when it holds something else or is too deep. The caller owns the result.
CFPropertyListRef CFPropertyListCreateDeepCopy(CFAllocatorRef allocator, CFPropertyListRef list,
                                               CFOptionFlags options);

/// Whether the list could be written.
Boolean CFPropertyListIsValid(CFPropertyListRef list, CFPropertyListFormat format);

CF_EXTERN_C_END
