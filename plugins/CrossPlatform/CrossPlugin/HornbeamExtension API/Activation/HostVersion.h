#pragma once

#include <string>

/// The rules by which a host's version fits the plug-in. No state; any thread.
namespace HostVersion {

/// Compares dotted versions field by field as numbers; missing fields count as 0, and a character that is no
/// digit adds its distance from '0'. 1, 0 or -1, as the first is later, the same or earlier.
int CompareVersionStrings(const std::string& a, const std::string& b);

/// Whether a host of that version may run the plug-in: it begins with the prefix, or, when no prefix is
/// demanded, is not earlier than the minimum. With neither demanded every host fits. A mismatch is logged.
bool IsCompatible(const std::string& versionPrefixRequired, const std::string& minimumVersionRequired,
                  const std::string& hostAppVersion);

}  // namespace HostVersion
