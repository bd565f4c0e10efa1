#pragma once

#include <string>
#include <vector>

struct MatchOptions {
  std::vector<std::string> names;
  std::string kind;     ///< what a document knows of the font beside its name; empty for nothing
  std::string foundry;  ///< likewise
  bool family = false;  ///< the names are those of families
  bool json = false;    ///< one JSON object a name, on one line
};

/// `hornbeam match`: shows which fonts of the library a document would be offered for each name, the best
/// first, and why. It finds them as the plug-in does, in the selected library.
///
/// \return An ExitCode: kExitFailed also when a name was not found.
int RunMatch(const MatchOptions& options);
