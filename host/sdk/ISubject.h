#pragma once

#include "IPMUnknown.h"

/// Tells those who watch an object that it has changed.
class ISubject : public IPMUnknown {
 public:
  static constexpr PMIID kDefaultIID = IID_ISUBJECT;

  /// \param change  What has changed; see ClassIDs.h.
  virtual void Change(ClassID change) = 0;
};
