#pragma once

#include "CPMUnknown.h"
#include "IK2ServiceProvider.h"
#include "ServiceIDs.h"

/// The usual base of a service provider: offers what GetServiceID() says, for the whole session, and is
/// nobody's default.
class CServiceProvider : public CPMUnknown<IK2ServiceProvider> {
 public:
  using CPMUnknown::CPMUnknown;

  ServiceID GetServiceID() const override { return kInvalidService; }
  bool IsDefaultServiceProvider() const override { return false; }
  InstancePerX GetInstantiationPolicy() const override { return kInstancePerSession; }

  bool HasMultipleIDs() const override {
    K2Vector<ServiceID> serviceIDs;
    GetServiceIDs(serviceIDs);
    return serviceIDs.size() > 1;
  }

  void GetServiceIDs(K2Vector<ServiceID>& serviceIDs) const override { serviceIDs.push_back(GetServiceID()); }
};
