#pragma once

#include <ft2build.h>
#include FT_FREETYPE_H

#include <cstdint>
#include <span>
#include <string_view>

/// The checksums by which a document knows a font again, besides that of the whole file, which is the first
/// 32 bits of its SHA-256. All can be computed by any program, and cost little beside the reading of the
/// file.
namespace kiln {

/// Of what the font draws and encodes, whatever container it comes in.
///
/// For an sfnt, compressed or not: the CRC-32 (ISO 3309, as zlib has it) of 12 bytes for each of these tables
/// that is there, in this order: "CFF ", "CFF2", "cmap", "glyf", "gvar", "hmtx", "loca". The 12 bytes are the
/// tag, the table's length and its checksum as the sfnt format defines it: the sum of its 32-bit words, zeros
/// behind the last; computed, not taken from the file. Behind them, for a named instance of a variable font,
/// the four bytes of its number. All numbers have the most significant byte first. For any other font: the
/// CRC-32 of the file, without the segment headers if it is a PFB.
uint32_t GlyphMarkChecksum(FT_Face face, uint32_t instance, std::span<const uint8_t> file);

/// Of the kerning data: 20 bits, since greater numbers are taken for damage by those who read them; 0 when
/// there is none.
///
/// For an sfnt: the low 20 bits of the CRC-32 of the tables "kern" and "GPOS", each as above; 1 in place of
/// 0.
uint32_t KerningChecksum(FT_Face face);

/// The same from the metrics of a Type 1 font (AFM): the CRC-32 of the lines that begin with "KP", without
/// the blanks at either end, each with a line feed behind it, in byte order.
uint32_t KerningChecksum(std::string_view metrics);

}  // namespace kiln
