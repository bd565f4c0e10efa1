#pragma once

#include <CoreFoundation/CoreFoundation.h>

#include <string>

#include "FontManagerInterface/FontNameForm.h"
#include "Identity/BestMatch.h"
#include "Memory/RetainPtr.h"

/// What was found for one name.
struct Match {
  std::string name;
  FontNameForm foundName;            ///< the form that found the candidates; empty without any
  RetainPtr<CFArrayRef> candidates;  ///< font records, the best first; never null
  EBestMatchTest decidedBy = EBestMatchTest::kNone;  ///< the best against the next
  RetainPtr<CFDictionaryRef> glyphMark;  ///< what identifies the best elsewhere; null without candidates
  bool excludedRemote = false;           ///< fonts of a library that is switched off were left out
};

/// As lines for people; there must be a candidate.
std::string MatchAsText(const Match& match);
/// As one line, with its end.
std::string MatchAsJson(const Match& match);
