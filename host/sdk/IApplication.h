#pragma once

#include "IPMUnknown.h"
#include "UIDRef.h"

/// The application as its user sees it.
class IApplication : public IPMUnknown {
 public:
  static constexpr PMIID kDefaultIID = IID_IAPPLICATION;

  /// The document that the user is working in; the null reference when none is open.
  virtual UIDRef GetFrontDocument() const = 0;
};
