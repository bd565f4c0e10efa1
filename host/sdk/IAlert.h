#pragma once

#include "IPMUnknown.h"
#include "PMString.h"

/// The host's own message box. Belongs to the session; CAlert is the short way to it.
class IAlert : public IPMUnknown {
 public:
  static constexpr PMIID kDefaultIID = IID_IALERT;

  /// Shows a text to the user, who can only take note of it.
  virtual void ShowInformation(const PMString& text) = 0;
};
