#pragma once

#include <string>

#include "Parsers/PDFObject.h"

/// One font of a PDF, as read.
struct PDFFontRecord {
  PDFObject object;              ///< Number 0 for a font of the XMP list.
  std::string sFontName;         ///< PostScript name; empty when the object has none.
  std::string sGlyphMarkBuffer;  ///< The dictionary's text from its "<<" up to its ">>"; empty when not kept.
  bool bFromMetadata = false;    ///< Of the XMP list.
};
