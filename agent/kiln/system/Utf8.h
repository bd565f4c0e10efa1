#pragma once

#include <string>
#include <string_view>

namespace kiln {

/// Whether a text may go into a message: well-formed UTF-8 (Unicode 15, table 3-7).
bool IsUtf8(std::string_view text);

/// The text with "?" for every byte that keeps it from being UTF-8, for people to read.
std::string Readable(std::string_view text);

}  // namespace kiln
