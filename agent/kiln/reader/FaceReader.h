#pragma once

#include <ft2build.h>
#include FT_FREETYPE_H

#include "protocol/FontReading.pb.h"

namespace kiln {

/// Reads the names and the kind of one opened face, without checksums.
/// \return False for a face that can't be used as a font: no outlines, no glyphs, no name.
bool ReadFaceNames(FT_Face face, wire::ReadFace& out);

}  // namespace kiln
