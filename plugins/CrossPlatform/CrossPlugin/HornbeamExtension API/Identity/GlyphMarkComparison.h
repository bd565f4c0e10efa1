#pragma once

#include <CoreFoundation/CoreFoundation.h>

#include "Memory/RetainPtr.h"

/// Two records that describe the same font: where they disagree, which is the more complete, and both in one.

/// How many keys the two have in common, and on how many of them they disagree, ignoring case. Both 0 when
/// either is null or empty, or both are the same object.
void CountConflicts(CFDictionaryRef d1, CFDictionaryRef d2, int& commonKeys, int& conflicts);

/// The primary record with what only the secondary knows. Null when either is null or empty, or both are the
/// same object. The caller owns the result.
CFMutableDictionaryRef CreateMergedDictionary(CFDictionaryRef primary, CFDictionaryRef secondary);

/// The record with more keys: 1 for the first, -1 for the second, 0 for equally many. Something beats null.
int CompareGlyphMarkInfo(CFDictionaryRef d1, CFDictionaryRef d2);
