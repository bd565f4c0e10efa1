#pragma once

#include <CoreFoundation/CoreFoundation.h>

#include <cstdint>

/// Reading what nearly every user of a font record needs. Every operation takes null, foreign types and
/// missing keys, and reads them as "not there". What is returned is borrowed from the record.
namespace FontRecord {

/// The element as a font record, null when it is no dictionary.
CFDictionaryRef At(CFArrayRef fonts, CFIndex index);

/// kGM_PostScriptNameKey, or null.
CFStringRef GetPostScriptName(CFDictionaryRef font);

/// kGM_DatabaseIDKey, or 0, which means no font; a number outside 32 bits is none either.
uint32_t GetDatabaseID(CFDictionaryRef font);

/// How many elements an array has; 0 for null.
CFIndex Count(CFArrayRef fonts);

}  // namespace FontRecord
