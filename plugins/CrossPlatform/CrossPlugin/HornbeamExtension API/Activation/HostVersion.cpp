#include "Activation/HostVersion.h"

#include <cstddef>
#include <cstdint>

#include "Utilities/DebugUtils.h"

namespace HostVersion {
namespace {

// The next field as a number; unsigned, so that a field of any length wraps instead of overflowing.
uint64_t TakeField(const std::string& version, size_t& position) {
  uint64_t value = 0;
  for (; position < version.size() && version[position] != '.'; ++position) {
    value = value * 10 + static_cast<uint64_t>(static_cast<int64_t>(version[position]) - '0');
  }
  ++position;
  return value;
}

}  // namespace

int CompareVersionStrings(const std::string& a, const std::string& b) {
  size_t positionInA = 0;
  size_t positionInB = 0;
  while (positionInA < a.size() || positionInB < b.size()) {
    const auto fieldOfA = static_cast<int64_t>(TakeField(a, positionInA));
    const auto fieldOfB = static_cast<int64_t>(TakeField(b, positionInB));
    if (fieldOfA != fieldOfB) return fieldOfA > fieldOfB ? 1 : -1;
  }
  return 0;
}

bool IsCompatible(const std::string& versionPrefixRequired, const std::string& minimumVersionRequired,
                  const std::string& hostAppVersion) {
  if (!versionPrefixRequired.empty()) {
    if (hostAppVersion.starts_with(versionPrefixRequired)) return true;
    OutputIndentedAndFormattedString(
        0, "RunningInCompatibleHostApp: app version (%s) incompatible with versionPrefixRequired (%s)",
        hostAppVersion.c_str(), versionPrefixRequired.c_str());
    return false;
  }
  if (minimumVersionRequired.empty()) return true;
  if (CompareVersionStrings(minimumVersionRequired, hostAppVersion) != 1) return true;
  OutputIndentedAndFormattedString(
      0, "RunningInCompatibleHostApp: app version (%s) incompatible with minimumVersionRequired (%s)",
      hostAppVersion.c_str(), minimumVersionRequired.c_str());
  return false;
}

}  // namespace HostVersion
