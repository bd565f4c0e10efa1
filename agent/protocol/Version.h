#pragma once

#include <cstdint>

namespace kiln {

/// Raised by a change of the schema that an older peer would misread.
inline constexpr uint32_t kProtocolVersion = 1;

/// Version of the agent and its client library, as both bundles and `Kiln --version` tell it.
inline constexpr const char* kKilnVersion = "15.1.0";

}  // namespace kiln
