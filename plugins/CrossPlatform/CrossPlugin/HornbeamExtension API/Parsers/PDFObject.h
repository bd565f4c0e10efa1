#pragma once

#include <cstdint>

/// An indirect object of a PDF as it is named in the file.
struct PDFObject {
  int32_t nObjectNumber = 0;  ///< 0 is no object.
  int32_t nGenerationNumber = 0;
  bool bIsReference = false;  ///< Written as "n g R".

  /// Both numbers in one, to compare by.
  uint64_t Key() const {
    return static_cast<uint64_t>(static_cast<uint32_t>(nObjectNumber)) << 32 |
           static_cast<uint32_t>(nGenerationNumber);
  }
};
