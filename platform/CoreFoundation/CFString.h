#pragma once

#include <CoreFoundation/CFBase.h>

#include <cstdarg>

/// Text, held as UTF-16; lengths and indexes count UTF-16 units, so a character beyond U+FFFF takes two.

using CFDataRef = const struct __CFData*;

using CFStringEncoding = UInt32;
constexpr CFStringEncoding kCFStringEncodingInvalidId = 0xffffffffU;
constexpr CFStringEncoding kCFStringEncodingMacRoman = 0;
constexpr CFStringEncoding kCFStringEncodingWindowsLatin1 = 0x0500;
constexpr CFStringEncoding kCFStringEncodingISOLatin1 = 0x0201;
constexpr CFStringEncoding kCFStringEncodingASCII = 0x0600;
constexpr CFStringEncoding kCFStringEncodingUTF8 = 0x08000100;
/// As UTF-16 in the machine's byte order; a byte order mark in front is obeyed and not part of the text.
constexpr CFStringEncoding kCFStringEncodingUnicode = 0x0100;
constexpr CFStringEncoding kCFStringEncodingUTF16 = 0x0100;
constexpr CFStringEncoding kCFStringEncodingUTF16BE = 0x10000100;
constexpr CFStringEncoding kCFStringEncodingUTF16LE = 0x14000100;
constexpr CFStringEncoding kCFStringEncodingUTF32 = 0x0c000100;
constexpr CFStringEncoding kCFStringEncodingUTF32BE = 0x18000100;
constexpr CFStringEncoding kCFStringEncodingUTF32LE = 0x1c000100;

using CFStringCompareFlags = CFOptionFlags;
/// Full Unicode case folding.
constexpr CFStringCompareFlags kCFCompareCaseInsensitive = 1;
/// For searches: from the end.
constexpr CFStringCompareFlags kCFCompareBackwards = 4;
/// For searches: only at the start, or with kCFCompareBackwards only at the end.
constexpr CFStringCompareFlags kCFCompareAnchored = 8;
/// Canonically equivalent spellings (U+00E9 and U+0065 U+0301) count as the same.
constexpr CFStringCompareFlags kCFCompareNonliteral = 16;
/// The order of the user's language.
constexpr CFStringCompareFlags kCFCompareLocalized = 32;
/// Runs of digits compare by value: "Foo2" < "Foo7" < "Foo25".
constexpr CFStringCompareFlags kCFCompareNumerically = 64;
constexpr CFStringCompareFlags kCFCompareDiacriticInsensitive = 128;
constexpr CFStringCompareFlags kCFCompareWidthInsensitive = 256;
/// Texts that only the other options make equal are ordered all the same, by their code points.
constexpr CFStringCompareFlags kCFCompareForcedOrdering = 512;

CF_EXTERN_C_BEGIN

CFTypeID CFStringGetTypeID();

/// \name Making strings. The caller owns the result.
/// @{

/// NULL when the text isn't valid in `encoding`: broken UTF-8 is refused whole, never repaired.
CFStringRef CFStringCreateWithCString(CFAllocatorRef allocator, const char* text, CFStringEncoding encoding);
/// As above, from `length` bytes, zeros among them. With `isExternal` a byte order mark is skipped.
CFStringRef CFStringCreateWithBytes(CFAllocatorRef allocator, const UInt8* bytes, CFIndex length,
                                    CFStringEncoding encoding, Boolean isExternal);
CFStringRef CFStringCreateWithCharacters(CFAllocatorRef allocator, const UniChar* characters, CFIndex length);
/// A path as the file system has it: UTF-8.
CFStringRef CFStringCreateWithFileSystemRepresentation(CFAllocatorRef allocator, const char* path);
CFStringRef CFStringCreateFromExternalRepresentation(CFAllocatorRef allocator, CFDataRef data,
                                                     CFStringEncoding encoding);
/// printf's conversions but %n, and `%@` for any object (its text, or its description), `%C` for a UniChar,
/// `%S` for a zero-ended UniChar text; positions as in `%2$@`. `%s` is UTF-8, broken bytes become U+FFFD.
/// A format that uses an argument in two ways or leaves one out between others stands for itself. `options`
/// must be NULL.
CFStringRef CFStringCreateWithFormat(CFAllocatorRef allocator, CFDictionaryRef options, CFStringRef format,
                                     ...);
CFStringRef CFStringCreateWithFormatAndArguments(CFAllocatorRef allocator, CFDictionaryRef options,
                                                 CFStringRef format, va_list arguments);
/// An immutable string gives itself with a new reference.
CFStringRef CFStringCreateCopy(CFAllocatorRef allocator, CFStringRef string);
CFStringRef CFStringCreateWithSubstring(CFAllocatorRef allocator, CFStringRef string, CFRange range);
/// The elements of an array of strings with `separator` between them; elements that aren't strings are
/// left out.
CFStringRef CFStringCreateByCombiningStrings(CFAllocatorRef allocator, CFArrayRef strings,
                                             CFStringRef separator);
/// The parts between the separators, empty ones too; an empty separator gives the whole string as one.
CFArrayRef CFStringCreateArrayBySeparatingStrings(CFAllocatorRef allocator, CFStringRef string,
                                                  CFStringRef separator);
/// `maxLength` above 0 limits the length: what would not fit is cut off.
CFMutableStringRef CFStringCreateMutable(CFAllocatorRef allocator, CFIndex maxLength);
CFMutableStringRef CFStringCreateMutableCopy(CFAllocatorRef allocator, CFIndex maxLength, CFStringRef string);
/// @}

/// \name Reading
/// @{

CFIndex CFStringGetLength(CFStringRef string);
/// 0 when the index is out of bounds.
UniChar CFStringGetCharacterAtIndex(CFStringRef string, CFIndex index);
/// Copies `range.length` units; nothing at all when the range isn't wholly within the string.
void CFStringGetCharacters(CFStringRef string, CFRange range, UniChar* buffer);
/// The text with a zero at its end. False, with the buffer's first byte 0, when it doesn't fit whole, holds a
/// zero itself or can't be said in `encoding`.
Boolean CFStringGetCString(CFStringRef string, char* buffer, CFIndex bufferSize, CFStringEncoding encoding);
/// The text without a copy, for as long as the string lives and isn't changed; NULL when there is none at
/// hand. Given for immutable strings in UTF-8, and in ASCII when they are.
const char* CFStringGetCStringPtr(CFStringRef string, CFStringEncoding encoding);
/// Converts as much of `range` as fits.
///
/// \param lossByte  Stands for what `encoding` can't say; 0 stops there instead.
/// \param isExternal  Puts a byte order mark in front of UTF-16 and UTF-32.
/// \param buffer  May be NULL to learn the size.
/// \param usedBytes  Receives the count of bytes. May be NULL.
/// \return The count of UTF-16 units converted.
CFIndex CFStringGetBytes(CFStringRef string, CFRange range, CFStringEncoding encoding, UInt8 lossByte,
                         Boolean isExternal, UInt8* buffer, CFIndex bufferSize, CFIndex* usedBytes);
/// The most bytes that `length` units can take, without a zero at the end; kCFNotFound when that overflows or
/// the encoding is unknown.
CFIndex CFStringGetMaximumSizeForEncoding(CFIndex length, CFStringEncoding encoding);
CFIndex CFStringGetMaximumSizeOfFileSystemRepresentation(CFStringRef string);
Boolean CFStringGetFileSystemRepresentation(CFStringRef string, char* buffer, CFIndex bufferSize);
/// The whole text as bytes, with a byte order mark for kCFStringEncodingUTF16 and UTF32. NULL when it can't
/// be said and `lossByte` is 0. The caller owns the result.
CFDataRef CFStringCreateExternalRepresentation(CFAllocatorRef allocator, CFStringRef string,
                                               CFStringEncoding encoding, UInt8 lossByte);
/// The number at the start, after white space: 0 when there is none, the nearest limit when it is too large.
SInt32 CFStringGetIntValue(CFStringRef string);
/// As above. The decimal point is "." in every locale.
double CFStringGetDoubleValue(CFStringRef string);
Boolean CFStringIsEncodingAvailable(CFStringEncoding encoding);
/// UTF-8.
CFStringEncoding CFStringGetSystemEncoding();
/// @}

/// \name Comparing and searching
/// @{

/// By code points without options. NULL comes before any string.
CFComparisonResult CFStringCompare(CFStringRef string1, CFStringRef string2, CFStringCompareFlags options);
/// The first place (the last with kCFCompareBackwards), or {kCFNotFound, 0}; also for an empty `toFind`.
CFRange CFStringFind(CFStringRef string, CFStringRef toFind, CFStringCompareFlags options);
/// As above within `range`. `result` may be NULL.
Boolean CFStringFindWithOptions(CFStringRef string, CFStringRef toFind, CFRange range,
                                CFStringCompareFlags options, CFRange* result);
/// True for an empty prefix or suffix of a string.
Boolean CFStringHasPrefix(CFStringRef string, CFStringRef prefix);
Boolean CFStringHasSuffix(CFStringRef string, CFStringRef suffix);
/// @}

/// \name Changing. An immutable string is left as it is.
/// @{

void CFStringAppend(CFMutableStringRef string, CFStringRef appended);
void CFStringAppendCString(CFMutableStringRef string, const char* text, CFStringEncoding encoding);
void CFStringAppendCharacters(CFMutableStringRef string, const UniChar* characters, CFIndex length);
void CFStringAppendFormat(CFMutableStringRef string, CFDictionaryRef options, CFStringRef format, ...);
void CFStringAppendFormatAndArguments(CFMutableStringRef string, CFDictionaryRef options, CFStringRef format,
                                      va_list arguments);
void CFStringInsert(CFMutableStringRef string, CFIndex index, CFStringRef inserted);
void CFStringDelete(CFMutableStringRef string, CFRange range);
void CFStringReplace(CFMutableStringRef string, CFRange range, CFStringRef replacement);
void CFStringReplaceAll(CFMutableStringRef string, CFStringRef replacement);
/// Replaces every place within `range`, without looking into what was put in. Returns their count; 0 for an
/// empty `toFind`.
CFIndex CFStringFindAndReplace(CFMutableStringRef string, CFStringRef toFind, CFStringRef replacement,
                               CFRange range, CFStringCompareFlags options);
/// Takes `trimmed` away from both ends as often as it stands there; an empty one does nothing.
void CFStringTrim(CFMutableStringRef string, CFStringRef trimmed);
void CFStringTrimWhitespace(CFMutableStringRef string);
/// Case by Unicode's rules; `locale` must be NULL (no language's own rules).
void CFStringLowercase(CFMutableStringRef string, CFLocaleRef locale);
void CFStringUppercase(CFMutableStringRef string, CFLocaleRef locale);
void CFStringCapitalize(CFMutableStringRef string, CFLocaleRef locale);
/// @}

/// For CFSTR only: the constant of this text, the same object for the same text.
CFStringRef __CFStringMakeConstantString(const char* text);

CF_EXTERN_C_END

/// A constant string of a literal in UTF-8. It lives for ever, so it needs no reference and isn't counted.
#define CFSTR(literal)                                                               \
  ([]() -> CFStringRef {                                                             \
    static const CFStringRef constant = __CFStringMakeConstantString("" literal ""); \
    return constant;                                                                 \
  }())
