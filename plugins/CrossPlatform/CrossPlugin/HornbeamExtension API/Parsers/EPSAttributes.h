#pragma once

#include <CoreFoundation/CoreFoundation.h>

#include <string>

/// The attributes of a FONTSPEC in a "%%DocumentFontSpecs" comment, and the record keys that they stand for.
/// Comparison is exact. Keys are borrowed constants.
namespace EPSAttributes {

/// Null for an unknown attribute.
CFStringRef GetKeyForAttributeName(const std::string& name);

/// \param outName  Untouched when the key has no attribute.
bool OutputKeyForGlyphMarkKey(CFStringRef key, std::string& outName);

}  // namespace EPSAttributes
