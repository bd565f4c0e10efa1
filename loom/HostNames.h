#pragma once

#include <string>

namespace HostNames {

/// The name by which users know a host, from its code: "InDesign CC 2020" for "InDesignCC2020". An unknown
/// code is its own name; "the host application" for an empty one.
std::string DisplayName(const std::string& hostApp);

}  // namespace HostNames
