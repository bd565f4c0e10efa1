#pragma once

#include "BaseType.h"

/// The bytes of one object of a document on their way in or out: the same calls read and write. Numbers are
/// kept with their lowest byte first.
class IPMStream {
 public:
  virtual ~IPMStream() = default;

  virtual bool IsReading() const = 0;
  virtual bool IsWriting() const = 0;

  /// \return How many were transferred; fewer than asked at the end of the data, and then the rest of the
  ///         values stays as it was.
  virtual int32 XferInt32(int32* values, int32 count = 1) = 0;
  virtual int32 XferByte(uchar* bytes, int32 count = 1) = 0;
};
