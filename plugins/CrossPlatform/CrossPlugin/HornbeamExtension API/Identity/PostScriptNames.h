#pragma once

#include <CoreFoundation/CoreFoundation.h>

#include <string>

/// The rules by which PostScript names compare, for the sources of GlyphMarkSupport. They keep no state and
/// are free of any locale.

/// How loosely two names may match.
enum class EMatchLevel : int {
  kIdentical = 1,         ///< The same bytes.
  kStripped = 2,          ///< Also names that differ in punctuation only.
  kStrippedSpecials = 3,  ///< Also names that differ in "#" escapes or behind the second hyphen.
};

/// The ASCII letters and digits of the name. With handleSpecials "#" takes the digits behind it along, and
/// the second "-" ends the name.
///
/// A name wholly of other bytes, such as a Japanese one, gives "": any two of them match at kStripped.
std::string GFontToolUtils_StripCharsAndNormalizeString(const std::string& name, bool handleSpecials);

bool GFontToolUtils_DoPostScriptNamesMatch(const std::string& a, const std::string& b, EMatchLevel level);

/// The name without blanks, parentheses, slashes, brackets and braces, which the caller owns; null for null
/// and when nothing is left.
CFStringRef CreateStringStrippingIllegalCharsInPostScriptName(CFStringRef name);
