#include "kiln/fonts/FontRanking.h"

#include <strings.h>

#include <cmath>
#include <cstdlib>
#include <string>

#include "protocol/ActivationStates.h"

namespace kiln {
namespace {

bool Agrees(uint64_t wanted, uint64_t found) {
  return wanted != 0 && wanted == found;
}

bool Agrees(const std::string& wanted, const std::string& found) {
  return !wanted.empty() && wanted.size() == found.size() && strcasecmp(wanted.c_str(), found.c_str()) == 0;
}

// The number that a version begins with; 0 for a text like "nan", which strtod() takes for one.
double VersionNumber(const std::string& version) {
  const double number = std::strtod(version.c_str(), nullptr);
  return std::isfinite(number) ? number : 0;
}

// The newer one first. Numbers are decimal, as in fonts: 2.10 is less than 2.9.
int CompareVersions(const std::string& first, const std::string& second) {
  const double one = VersionNumber(first);
  const double two = VersionNumber(second);
  if (one != two) return one > two ? -1 : 1;
  return second.compare(first);
}

int StateRank(const wire::Font& font) {
  if (!IsActive(font.state())) return font.state() == wire::ACTIVATION_INACTIVE ? 2 : 3;
  return font.is_system() ? 1 : 0;
}

int KindRank(const wire::Font& font) {
  switch (font.kind()) {
    case wire::FONT_KIND_OPENTYPE:
      return 0;
    case wire::FONT_KIND_POSTSCRIPT:
      return 1;
    case wire::FONT_KIND_TRUETYPE:
      return 2;
    default:
      return 3;
  }
}

}  // namespace

uint32_t Agreement(const wire::FontIdentity& identity, const wire::Font& font) {
  const bool agreements[] = {
      Agrees(identity.glyphmark_checksum(), font.glyphmark_checksum()),
      Agrees(identity.checksum(), font.checksum()),
      identity.kind() != wire::FONT_KIND_UNKNOWN && identity.kind() == font.kind(),
      Agrees(identity.foundry(), font.foundry()),
      Agrees(identity.version(), font.version()),
      Agrees(identity.kerning_checksum(), font.kerning_checksum()),
      Agrees(identity.outline_file_size(), font.outline_file_size()),
      Agrees(identity.outline_file_name(), font.outline_file_name()),
      Agrees(identity.family(), font.family()),
  };
  uint32_t bits = 0;
  for (const bool agrees : agreements) bits = (bits << 1) | (agrees ? 1 : 0);
  return bits;
}

int CompareCandidates(const wire::FontIdentity* identity, const wire::Font& first, const wire::Font& second) {
  // A font whose file has gone helps nobody, however well it fits.
  const bool firstIsThere = StateRank(first) < 3;
  const bool secondIsThere = StateRank(second) < 3;
  if (firstIsThere != secondIsThere) return firstIsThere ? -1 : 1;
  if (identity) {
    const uint32_t one = Agreement(*identity, first);
    const uint32_t two = Agreement(*identity, second);
    if (one != two) return one > two ? -1 : 1;
  }
  if (const int difference = StateRank(first) - StateRank(second)) return difference;
  if (const int difference = KindRank(first) - KindRank(second)) return difference;
  if (const int difference = CompareVersions(first.version(), second.version())) return difference;
  if (first.in_vault() != second.in_vault()) return first.in_vault() ? -1 : 1;
  if (first.id() != second.id()) return first.id() < second.id() ? -1 : 1;
  return 0;
}

}  // namespace kiln
