#pragma once

#include <map>
#include <string>

namespace idml {

/// Stores data in a package under names of the caller's, as parts of their own beside the document's, which
/// stay as they are, byte for byte and in their order. What stood under the same name is replaced.
///
/// The file changes at once and whole: a copy is made beside it, completed, brought to disk and put in its
/// place, with its permissions. When anything fails, the file is untouched and nothing is left beside it. A
/// symbolic link is followed, and stays one.
///
/// \param path  A package.
/// \param stored  Data by name; a name is made of letters, digits, dots, dashes and underscores. At most
///        limits::kMaximumStoredSize bytes each.
/// \param error  On failure one sentence that begins with the path.
/// \return false on failure. Throws nothing.
bool StoreInPackage(const std::string& path, const std::map<std::string, std::string>& stored,
                    std::string& error);

}  // namespace idml
