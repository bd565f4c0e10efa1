#pragma once

#include "IPMUnknown.h"
#include "PMString.h"

/// A font that the host can set text in now.
class IPMFont : public IPMUnknown {
 public:
  static constexpr PMIID kDefaultIID = IID_IPMFONT;

  virtual PMString GetPostscriptName() const = 0;
};
