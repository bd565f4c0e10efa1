#pragma once

#include <CoreFoundation/CoreFoundation.h>

#include <cstdint>

/// What FontManagerInterface::GetFontInfoByID() tells about one font. A plain value; `fontInfo` belongs to
/// the caller of that operation, who releases it.
struct FontOrSetInfoRec {
  static constexpr uint64_t kTagEmpty = 0;
  static constexpr uint64_t kTagFont = 1;
  static constexpr int32_t kKindFont = 0;
  static constexpr int32_t kKindSet = 1;

  uint64_t tag = kTagEmpty;                   ///< kTagFont when the record holds a font.
  int32_t kind = kKindFont;                   ///< Whether a font or a set is described.
  uint32_t databaseID = 0;                    ///< The agent's ID; 0 means no font.
  int16_t activationState = 0;                ///< The plug-in's activation status, 0 to 3.
  CFMutableDictionaryRef fontInfo = nullptr;  ///< The font record.
};
