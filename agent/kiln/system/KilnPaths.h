#pragma once

#include <string>

namespace kiln {

/// Where Kiln keeps things, by the XDG base folders of its environment.
struct KilnPaths {
  std::string data;      ///< `$XDG_DATA_HOME/kiln`: all that belongs to the library
  std::string dataLock;  ///< held locked while a Kiln uses the library
  std::string database;  ///< the library's records
  std::string vault;     ///< copies of the font files, by their content
  std::string incoming;  ///< copies on their way into the vault; emptied at start
  std::string links;     ///< `$XDG_DATA_HOME/fonts/kiln`: what is active for all programs
  std::string state;     ///< `$XDG_STATE_HOME/kiln`: logs
  std::string log;

  static KilnPaths FromEnvironment();
};

/// Makes a folder and those above it, the new ones for this user alone.
/// \return 0 or an errno. A folder that exists already is left as it is.
int MakeFolders(const std::string& path);

}  // namespace kiln
