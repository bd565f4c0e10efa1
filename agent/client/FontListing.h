#pragma once

#include <vector>

#include "GTypes.h"
#include "client/Session.h"

/// Reads long lists of fonts page by page.
namespace FontListing {

/// Appends all fonts of the workgroups, by ascending ID.
///
/// \param workgroupIDs  None: all.
/// \return 0 or the code of the first page that failed; GKVMessageDataHandler::kInvalidMessage for a list
///     without end.
TErrCode Read(Session& session, const std::vector<uint32_t>& workgroupIDs,
              std::vector<kiln::wire::Font>& outFonts);

}  // namespace FontListing
