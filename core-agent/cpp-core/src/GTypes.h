#pragma once

#include <cstdint>

using TSInt16 = std::int16_t;
using TUInt16 = std::uint16_t;
using TSInt32 = std::int32_t;
using TUInt32 = std::uint32_t;
using TUInt64 = std::uint64_t;

/// An error code: a small index in the high byte, the number of the class in the low 24 bits; 0 is success.
using TErrCode = unsigned int;
