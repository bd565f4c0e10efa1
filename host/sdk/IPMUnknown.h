#pragma once

#include "BaseType.h"
#include "InterfaceIDs.h"

/// The root of every interface. An object of the host, a boss, is a set of interfaces that share one life:
/// each of them answers for all the others.
///
/// Ownership: an object lives as long as someone holds a reference to any of its interfaces. Operations named
/// Query... or Create... give a reference that the caller releases; those named Get... do not. InterfacePtr
/// keeps the count.
///
/// Thread: the host's main thread, unless an interface says otherwise.
class IPMUnknown {
 public:
  static constexpr PMIID kDefaultIID = IID_IPMUNKNOWN;

  /// For the one that owns the boss; everyone else calls Release().
  virtual ~IPMUnknown() = default;

  virtual void AddRef() = 0;
  virtual void Release() = 0;

  /// Asks the same object for another of its interfaces.
  ///
  /// \return The interface with a reference for the caller, or null when the object does not have it. The
  ///         pointer is the IPMUnknown base of that interface, so a static_cast to it is right.
  virtual IPMUnknown* QueryInterface(PMIID interfaceID) = 0;
};
