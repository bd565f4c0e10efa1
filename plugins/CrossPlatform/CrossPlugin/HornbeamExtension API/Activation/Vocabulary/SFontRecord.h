#pragma once

#include <CoreFoundation/CoreFoundation.h>

#include <cstdint>
#include <string>

/// One font as FontActivationTracker knows it, keyed by its database ID.
///
/// A plain value: copies share the two retained objects, which the tracker alone releases, once, when it
/// drops the font. The destructor releases nothing.
struct SFontRecord {
  CFDictionaryRef fontInfo = nullptr;    ///< Retained; the font record as it was at first registration.
  uint32_t nDatabaseID = 0;              ///< The map's key again.
  bool bAlreadyActive = false;           ///< Active before the first registration; never changes afterwards.
  CFStringRef postscriptName = nullptr;  ///< Retained.
  std::string sFirstDocumentIdentifier;  ///< The identifier that raised nRefCount from 0.
  bool bOpen = false;                    ///< From the first registration until the font is closed.
  uint32_t nRefCount = 0;                ///< Registrations not closed yet.
  void* pDeactivationData = nullptr;     ///< From the first registration, for DeactivateFont(). Not owned.
};
