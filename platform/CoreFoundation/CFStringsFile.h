#pragma once

#include <map>
#include <string>
#include <string_view>

namespace cf {

using StringsTable = std::map<std::u16string, std::u16string>;

/// Reads the texts of a localized table: `"key" = "value";`, keys and values also as plain words, `"key";`
/// for a value that is its key, with /* */ and // comments, and the escapes \n \r \t \" \\ \Uxxxx and \ooo.
/// An entry that can't be read is skipped up to its ";". Of equal keys the last one counts.
///
/// \param bytes  UTF-8, or UTF-16 with a byte order mark; broken UTF-8 becomes U+FFFD.
StringsTable ParseStrings(std::string_view bytes);

}  // namespace cf
