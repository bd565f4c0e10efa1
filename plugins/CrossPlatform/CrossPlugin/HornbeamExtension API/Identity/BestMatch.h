#pragma once

#include <CoreFoundation/CoreFoundation.h>

/// Which of several fonts of one name a document gets. Values are read as strings; a missing or foreign value
/// matches nothing.

/// The tests, in their order; the first that tells two fonts apart ends the comparison.
enum class EBestMatchTest : int {
  kNone = 0,          ///< None of them does.
  kActiveState,       ///< Active in the record, a user's font before the system's.
  kLiveState,         ///< Active at the agent.
  kRequestedKind,     ///< Kind as in the request.
  kRequestedFoundry,  ///< Foundry as in the request.
  kKindRanking,       ///< OpenType, Postscript, TrueType.
  kAdobeFoundry,
  kVersion,
  kTemporary,
  kVault,
};

/// What the comparison found.
struct BestMatchDecision {
  int result = 0;  ///< -1 for the first font, 1 for the second, 0 for no preference.
  EBestMatchTest test = EBestMatchTest::kNone;
};

/// Compares two fonts. It never fails.
///
/// \param request  The request's font record. May be null.
/// Thread: main; the second test is a blocking call to the agent.
BestMatchDecision DecideBestMatch(CFDictionaryRef font1, CFDictionaryRef font2, CFDictionaryRef request);

/// Puts the better font first, with the shape of a CFComparatorFunction: the result of DecideBestMatch(). It
/// is no order that is consistent: sort with CFArraySortValues().
///
/// \param context  The request's font record. May be null.
/// Thread: as above.
CFComparisonResult PickBestMatchCallBack(const void* fontRef1, const void* fontRef2, void* context);

/// Whether the text occurs in the record's value, ignoring case. False for a null argument or an absent key.
bool KeyValueContains(CFDictionaryRef dict, CFStringRef key, CFStringRef value);

/// Which of two records agrees with the reference's value: -1 only the first, 1 only the second, else 0.
int KeyValueStringMatch(CFDictionaryRef reference, CFDictionaryRef dict1, CFDictionaryRef dict2,
                        CFStringRef key);
