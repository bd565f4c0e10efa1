#pragma once

#include <CoreFoundation/CoreFoundation.h>

#include <memory>
#include <string>
#include <vector>

/// Between font records and the plain arrays of IDs that the agent's library takes. Any thread.

/// A new array with the vector's elements, for one call of the library; never null.
std::unique_ptr<unsigned int[]> CreateArrayFromVector(const std::vector<unsigned int>& ids);

/// Appends `count` IDs.
void AppendArrayToVector(std::vector<unsigned long>& out, const unsigned int* ids, unsigned long count);

/// The database IDs of an array's records, in order; a record without one is left out, and so is what is no
/// record. Empty for a null array.
///
/// \param skipSystemFonts  Leaves out the records whose kGM_IsSystemKey isn't 0 as well.
std::vector<unsigned int> GetFontIDsFromFontInfoArray(CFArrayRef fonts, bool skipSystemFonts);

/// The record's PostScript name in UTF-8, empty for none.
std::string GetPostscriptName(CFDictionaryRef font);
