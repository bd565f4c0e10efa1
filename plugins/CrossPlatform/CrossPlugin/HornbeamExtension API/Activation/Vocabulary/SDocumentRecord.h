#pragma once

#include <cstdint>
#include <string>
#include <vector>

/// The registrations of one document identifier in FontActivationTracker. A plain value.
struct SDocumentRecord {
  std::string sDocumentIdentifier;  ///< The map's key again.
  std::vector<uint32_t> vFontIDs;   ///< One database ID a registration, in their order; an ID may repeat.
};
