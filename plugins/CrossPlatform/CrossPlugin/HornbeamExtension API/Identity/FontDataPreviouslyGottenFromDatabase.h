#pragma once

#include <CoreFoundation/CoreFoundation.h>

#include <map>
#include <string>

#include "FontManagerInterface/FontOrSetInfoRec.h"

/// What was fetched about fonts earlier, so that a name that is known to be active costs no round trip.
///
/// Nothing fills it in the running system, so it never answers there: an entry must not outlive the state
/// that it describes, and nobody tells it about changes.
///
/// Thread: the caller's, no lock.
class FontDataPreviouslyGottenFromDatabase {
 public:
  FontDataPreviouslyGottenFromDatabase() = delete;

  /// Looks for an active font of exactly that name; of several, the lowest ID.
  ///
  /// \param outFont  Receives a mutable copy that the caller owns.
  /// \return Whether there is one; both out arguments are untouched otherwise.
  static bool CreateCopyOfGlyphmarkDataForActiveFont(const std::string& postScriptName,
                                                     CFMutableDictionaryRef& outFont,
                                                     unsigned int& outFontID);

  /// For tests: the entries themselves. The records in them are not owned.
  static std::map<unsigned int, FontOrSetInfoRec>& EntriesForTesting() { return idToInfoRec; }

 private:
  static std::map<unsigned int, FontOrSetInfoRec> idToInfoRec;
};
