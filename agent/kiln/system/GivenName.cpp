#include "kiln/system/GivenName.h"

#include <cstddef>

namespace kiln {
namespace {

constexpr size_t kMostUnits = 255;

}  // namespace

bool IsGivenName(std::string_view name) {
  size_t units = 0;
  bool onlyBlanks = true;
  for (const char c : name) {
    const auto byte = static_cast<unsigned char>(c);
    if (byte == 0) return false;
    if ((byte & 0xC0) != 0x80) units += byte >= 0xF0 ? 2 : 1;
    onlyBlanks = onlyBlanks && byte <= ' ';
  }
  return !onlyBlanks && units <= kMostUnits;
}

}  // namespace kiln
