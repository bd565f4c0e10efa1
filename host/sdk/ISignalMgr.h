#pragma once

#include "IPMUnknown.h"

/// One signal on its way to the responders. For the document signals the same object has IDocumentSignalData.
class ISignalMgr : public IPMUnknown {
 public:
  static constexpr PMIID kDefaultIID = IID_ISIGNALMGR;

  /// Which signal it is: the service that the responder offered to hear it. See ServiceIDs.h.
  virtual ServiceID GetServiceID() const = 0;
};
