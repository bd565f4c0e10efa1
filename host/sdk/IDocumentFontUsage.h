#pragma once

#include "IPMUnknown.h"

/// Where a document uses its fonts, in text and in placed graphics. Belongs to the document.
class IDocumentFontUsage : public IPMUnknown {
 public:
  static constexpr PMIID kDefaultIID = IID_IDOCUMENTFONTUSAGE;

  /// Walks the document anew. Takes time in proportion to it.
  virtual void UpdateFontList() = 0;
};
