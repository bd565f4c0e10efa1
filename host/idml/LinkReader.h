#pragma once

#include <pugixml.hpp>
#include <vector>

#include "idml/Model.h"

namespace idml {

/// Appends the links (elements Link) of a spread, master spread or story, in the order of the part.
///
/// The time of the placed file comes from LinkImportStamp, "file <time> <size>" with the time in units of
/// 100 ns since 1601 UTC, else from LinkImportModificationTime, which is in the local time of the machine
/// that stored the document and is taken as local here.
///
/// \param root  The part's root element, nested no deeper than limits::kMaximumDepth.
/// \return false when there are more than limits::kMaximumLinks.
bool ReadLinks(const pugi::xml_node& root, std::vector<Link>& links);

}  // namespace idml
