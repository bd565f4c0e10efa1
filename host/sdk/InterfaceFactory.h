#pragma once

#include <memory>

#include "IPMUnknown.h"

/// Makes one interface of a boss.
struct InterfaceFactory {
  PMIID interfaceID;
  ImplementationID implementationID;
  /// \param boss  The object that the interface will belong to. It outlives what is made here.
  std::unique_ptr<IPMUnknown> (*create)(IPMUnknown* boss);
};

/// The factory of an implementation that is made from its boss alone, under the interface's own number.
template <class Implementation>
constexpr InterfaceFactory MakeInterfaceFactory(ImplementationID implementationID,
                                                PMIID interfaceID = Implementation::kDefaultIID) {
  return {interfaceID, implementationID, [](IPMUnknown* boss) -> std::unique_ptr<IPMUnknown> {
            return std::make_unique<Implementation>(boss);
          }};
}
