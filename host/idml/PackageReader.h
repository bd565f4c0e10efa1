#pragma once

#include <optional>
#include <string>

#include "idml/Model.h"

namespace idml {

/// Reads a document package in Adobe's published format (IDML File Format Specification, version 8.0): a zip
/// archive of XML parts that designmap.xml names.
///
/// What may be missing is what the design map doesn't name; a part that it names must be there and well
/// formed. Nothing is read beyond the limits of Limits.h, and time is linear in the size of the parts.
///
/// Stories are read in the order of the design map's StoryList, which is the document's own; those that it
/// doesn't list follow in the order in which the design map names their parts.
///
/// \param path  The file.
/// \param error  On failure one sentence that begins with the path and names the part where there is one.
/// \return nothing on failure. Throws nothing; thread: any.
std::optional<Document> ReadPackage(const std::string& path, std::string& error);

}  // namespace idml
