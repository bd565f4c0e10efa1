#pragma once

#include "CServiceProvider.h"

/// Subscribes HornbeamResponder to the host's document signals.
class HornbeamServiceProvider : public CServiceProvider {
 public:
  explicit HornbeamServiceProvider(IPMUnknown* boss);

  PMString GetName() const override;

  /// The first of the list.
  ServiceID GetServiceID() const override;
  void GetServiceIDs(K2Vector<ServiceID>& serviceIDs) const override;

 private:
  K2Vector<ServiceID> m_vServiceIDs;
};
