#pragma once

#include "IPMUnknown.h"
#include "ISignalMgr.h"

/// Hears the signals whose services the same boss offers through its CServiceProvider.
class IResponder : public IPMUnknown {
 public:
  static constexpr PMIID kDefaultIID = IID_IRESPONDER;

  /// Called in the middle of the host's own work: no dialog may be opened here.
  ///
  /// \param signal  Lives for the call; no reference.
  virtual void Respond(ISignalMgr* signal) = 0;
};
