#include "headless/MemoryStream.h"

#include <algorithm>

namespace headless {

int32 MemoryStream::XferInt32(int32* values, int32 count) {
  constexpr int32 kBytes = 4;
  for (int32 i = 0; i < count; ++i) {
    uchar bytes[kBytes];
    const auto value = static_cast<uint32>(values[i]);
    for (int32 byte = 0; byte < kBytes; ++byte) bytes[byte] = static_cast<uchar>(value >> (8 * byte));
    if (m_bReading && m_sBytes.size() - m_nPosition < kBytes) return i;
    XferByte(bytes, kBytes);
    uint32 result = 0;
    for (int32 byte = 0; byte < kBytes; ++byte) result |= static_cast<uint32>(bytes[byte]) << (8 * byte);
    values[i] = static_cast<int32>(result);
  }
  return std::max(count, 0);
}

int32 MemoryStream::XferByte(uchar* bytes, int32 count) {
  if (count <= 0) return 0;
  auto wanted = static_cast<std::size_t>(count);
  if (m_bReading) {
    wanted = std::min(wanted, m_sBytes.size() - m_nPosition);
    std::copy_n(m_sBytes.begin() + static_cast<std::ptrdiff_t>(m_nPosition), wanted, bytes);
    m_nPosition += wanted;
  } else {
    m_sBytes.append(reinterpret_cast<const char*>(bytes), wanted);
  }
  return static_cast<int32>(wanted);
}

}  // namespace headless
