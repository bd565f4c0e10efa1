#pragma once

#include <cstdint>
#include <span>

/// What a file says of its own form, before a font engine touches it.
namespace kiln {

enum class FontContainer {
  kNone,   ///< No outline font, or a form that Kiln doesn't take.
  kSfnt,   ///< TrueType, OpenType, or a collection of them.
  kWoff,   ///< A compressed sfnt.
  kType1,  ///< PFA or PFB.
  kBareCff
};

FontContainer ContainerOf(std::span<const uint8_t> file);

/// False when a table that the directory of an sfnt or of a collection's face announces lies outside the
/// file: the file was cut off or damaged. A font engine would go on without the table.
bool TablesAreWithin(std::span<const uint8_t> sfnt);

}  // namespace kiln
