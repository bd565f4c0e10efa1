#pragma once

#include <cstdint>
#include <vector>

#include "protocol/Kiln.pb.h"

namespace kiln {

/// What a change of activations did to the fonts that programs see, and what it found out on its way.
struct ActivationChange {
  std::vector<wire::FontPlace> activated;         ///< for all programs
  std::vector<wire::FontPlace> deactivated;       ///< for all programs
  std::vector<wire::FontPlace> localActivated;    ///< in the process of the client that asked
  std::vector<wire::FontPlace> localDeactivated;  ///< in the process of the client that asked
  std::vector<uint32_t> missing;                  ///< their file has gone, which wasn't known before
  std::vector<uint32_t> refused;                  ///< needed by the document of the client that asked
};

/// \param local  As the client's own process has the font, and not as all programs see it.
wire::FontPlace PlaceOf(const wire::Font& font, bool local);

}  // namespace kiln
