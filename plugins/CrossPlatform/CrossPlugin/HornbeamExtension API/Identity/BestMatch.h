#pragma once

#include <CoreFoundation/CoreFoundation.h>

/// Which of several fonts of one name a document gets. Values are read as strings; a missing or foreign value
/// matches nothing.

/// Puts the better font first, with the shape of a CFComparatorFunction: -1 for the first, 1 for the second,
/// 0 for no preference. It never fails, and it is no order that is consistent: sort with CFArraySortValues().
///
/// The tests, of which the first that decides ends it: active in the record, active at the agent, kind and
/// foundry as in the request, kind ranking, Adobe as foundry, version, temporary, in the vault.
///
/// \param context  The request's font record. May be null.
/// Thread: main; the second test is a blocking call to the agent.
CFComparisonResult PickBestMatchCallBack(const void* fontRef1, const void* fontRef2, void* context);

/// Whether the text occurs in the record's value, ignoring case. False for a null argument or an absent key.
bool KeyValueContains(CFDictionaryRef dict, CFStringRef key, CFStringRef value);

/// Which of two records agrees with the reference's value: -1 only the first, 1 only the second, else 0.
int KeyValueStringMatch(CFDictionaryRef reference, CFDictionaryRef dict1, CFDictionaryRef dict2,
                        CFStringRef key);
