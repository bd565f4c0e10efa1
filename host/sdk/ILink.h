#pragma once

#include <string>

#include "IPMUnknown.h"

/// The tie between a place in a document and the file that is shown there.
class ILink : public IPMUnknown {
 public:
  static constexpr PMIID kDefaultIID = IID_ILINK;

  /// Where the file lies, as the document says it: a URI in UTF-8, percent-encoded.
  virtual std::string GetURI() const = 0;
};
