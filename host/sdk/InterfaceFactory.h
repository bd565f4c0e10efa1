#pragma once

#include <memory>

#include "IPMStream.h"
#include "IPMUnknown.h"

/// Makes one interface of a boss.
struct InterfaceFactory {
  PMIID interfaceID;
  ImplementationID implementationID;
  /// \param boss  The object that the interface will belong to. It outlives what is made here.
  std::unique_ptr<IPMUnknown> (*create)(IPMUnknown* boss);
  /// Null, or keeps the interface in its document's file (kDocBoss only): called with a reading stream when a
  /// document is opened that has data of this implementation, and with a writing one at each save. What is
  /// written is kept under implementationID; nothing written keeps nothing.
  void (*readWrite)(IPMUnknown* interface, IPMStream* stream, ImplementationID implementationID) = nullptr;
};

/// The factory of an implementation that is made from its boss alone, under the interface's own number.
template <class Implementation>
constexpr InterfaceFactory MakeInterfaceFactory(ImplementationID implementationID,
                                                PMIID interfaceID = Implementation::kDefaultIID) {
  return {interfaceID, implementationID, [](IPMUnknown* boss) -> std::unique_ptr<IPMUnknown> {
            return std::make_unique<Implementation>(boss);
          }};
}

/// The same for an implementation that is kept in its document's file, by its own
/// ReadWrite(IPMStream*, ImplementationID).
template <class Implementation>
constexpr InterfaceFactory MakePersistentInterfaceFactory(ImplementationID implementationID,
                                                          PMIID interfaceID = Implementation::kDefaultIID) {
  InterfaceFactory factory = MakeInterfaceFactory<Implementation>(implementationID, interfaceID);
  factory.readWrite = [](IPMUnknown* interface, IPMStream* stream, ImplementationID id) {
    static_cast<Implementation*>(interface)->ReadWrite(stream, id);
  };
  return factory;
}
