#pragma once

#include <cstddef>
#include <string>
#include <utility>

#include "IPMStream.h"

namespace headless {

/// A stream over bytes in memory, for reading or for writing.
class MemoryStream final : public IPMStream {
 public:
  /// Reads what is given.
  explicit MemoryStream(std::string bytes) : m_sBytes(std::move(bytes)), m_bReading(true) {}
  /// Writes; Bytes() tells what.
  MemoryStream() = default;

  bool IsReading() const override { return m_bReading; }
  bool IsWriting() const override { return !m_bReading; }
  int32 XferInt32(int32* values, int32 count) override;
  int32 XferByte(uchar* bytes, int32 count) override;

  const std::string& Bytes() const { return m_sBytes; }

 private:
  std::string m_sBytes;
  bool m_bReading = false;
  std::size_t m_nPosition = 0;
};

}  // namespace headless
