#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

/// Texts out of font files, which may hold any bytes: each function gives short, valid UTF-8 without control
/// characters, whatever comes in.
namespace kiln {

/// A name record of the Unicode and Windows platforms. Halves of surrogate pairs are left out.
std::string TextFromUtf16(std::span<const uint8_t> bigEndian);

/// A name record of the Macintosh platform, or a string of a Type 1 font. Only ASCII stays.
std::string TextFromAscii(std::string_view text);

/// As TextFromAscii(), without the characters that no PostScript name may have: blanks and ()[]{}<>/%.
std::string PostScriptNameFrom(std::string_view text);

/// "Version 2.37; build 5" -> "2.37; build 5": a text that begins with the number, so that it can be
/// compared.
std::string VersionFrom(const std::string& text);

}  // namespace kiln
