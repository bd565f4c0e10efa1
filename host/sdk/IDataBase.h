#pragma once

#include "IDFile.h"
#include "IPMUnknown.h"
#include "UID.h"

/// The store of one document's objects. References to it are not counted: it lives from before the document's
/// first signal until its after-close signal has been answered. By then the objects are gone, and asking for
/// one gives null.
class IDataBase {
 public:
  virtual ~IDataBase() = default;

  /// Gives an interface of one of the objects.
  ///
  /// \return The interface with a reference for the caller, or null when there is no such object or it lacks
  ///         the interface. To be cast as with IPMUnknown::QueryInterface().
  virtual IPMUnknown* QueryInstance(UID uid, PMIID interfaceID) = 0;

  /// The object that the others hang on: the document itself.
  virtual UID GetRootUID() const = 0;

  /// The document's own file; null while it was never saved. Belongs to the database.
  virtual const IDFile* GetSysFile() const = 0;
};
