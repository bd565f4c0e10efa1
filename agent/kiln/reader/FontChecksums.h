#pragma once

#include <ft2build.h>
#include FT_FREETYPE_H

#include <cstdint>
#include <span>
#include <string_view>

/// The checksums by which a document knows a font again. All are built on CRC-32 (ISO 3309, as zlib has it),
/// so that any program can compute them.
namespace kiln {

/// Of a whole file: its CRC-32.
uint32_t FileChecksum(std::span<const uint8_t> file);

/// Of what the font draws and encodes, whatever container it comes in.
///
/// For an sfnt, compressed or not: the CRC-32 of these tables, each that is there as its tag's four bytes and
/// then its data, in this order: "CFF ", "CFF2", "cmap", "glyf", "gvar", "hmtx", "loca". For a named instance
/// of a variable font, the four bytes of its number (most significant first) behind them. For any other font:
/// of the file, without the segment headers if it is a PFB.
uint32_t GlyphMarkChecksum(FT_Face face, uint32_t instance, std::span<const uint8_t> file);

/// Of the kerning data: 20 bits, since greater numbers are taken for damage by those who read them; 0 when
/// there is none.
///
/// For an sfnt: the low 20 bits of the CRC-32 of the tables "kern" and "GPOS", each as above; 1 in place of
/// 0.
uint32_t KerningChecksum(FT_Face face);

/// The same from the metrics of a Type 1 font (AFM): of the lines that begin with "KP", without the blanks at
/// either end, each with a line feed behind it, in byte order.
uint32_t KerningChecksum(std::string_view metrics);

}  // namespace kiln
