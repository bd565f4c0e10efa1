#pragma once

#include <string_view>

namespace kiln {

/// Whether users may give a workgroup or a set that name: 1 to 255 characters of UTF-16, not only blanks, and
/// none of them 0. \param name  UTF-8.
bool IsGivenName(std::string_view name);

}  // namespace kiln
