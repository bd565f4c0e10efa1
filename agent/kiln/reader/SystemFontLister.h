#pragma once

#include <string>

namespace kiln {

/// Writes the fonts that fontconfig shows, as SystemListing frames (FontReading.proto).
/// \param excluded  A folder whose fonts are left out.
/// \return False when fontconfig can't be set up or the reader has gone.
bool ListSystemFonts(const std::string& excluded, int descriptor);

}  // namespace kiln
