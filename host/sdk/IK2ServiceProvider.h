#pragma once

#include "IPMUnknown.h"
#include "K2Vector.h"
#include "PMString.h"

/// Says which services a boss offers. The host asks once, when it registers the plug-in. CServiceProvider is
/// the usual base.
class IK2ServiceProvider : public IPMUnknown {
 public:
  static constexpr PMIID kDefaultIID = IID_IK2SERVICEPROVIDER;

  enum InstancePerX {
    kInstancePerSession,  ///< One boss serves every call.
    kInstancePerCall,     ///< A new boss for each call.
  };

  /// A name for the log.
  virtual PMString GetName() const = 0;

  /// The one service, or the first of several.
  virtual ServiceID GetServiceID() const = 0;

  virtual bool IsDefaultServiceProvider() const = 0;
  virtual InstancePerX GetInstantiationPolicy() const = 0;
  virtual bool HasMultipleIDs() const = 0;

  /// Appends every service to the list.
  virtual void GetServiceIDs(K2Vector<ServiceID>& serviceIDs) const = 0;
};
