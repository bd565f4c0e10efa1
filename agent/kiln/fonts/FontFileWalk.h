#pragma once

#include <string>
#include <vector>

namespace kiln {

/// By the extension of a file's name.
bool IsNamedAsFont(const std::string& fileName);

/// The files that are meant when a user names files and folders: a file as it is, a folder as the font files
/// in it and below, in the order of their names. Links in a folder aren't followed. The metrics of a Type 1
/// font, named together with it, are left out: they come with their font.
std::vector<std::string> FontFilesOf(const std::vector<std::string>& paths);

}  // namespace kiln
