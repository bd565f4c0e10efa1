#include "kiln/reader/FontContainer.h"

#include <algorithm>
#include <string_view>

namespace kiln {
namespace {

constexpr uint32_t kCollectionTag = 0x74746366;  // "ttcf"

uint32_t Number(std::span<const uint8_t> file, size_t offset, size_t bytes) {
  uint32_t number = 0;
  for (size_t i = 0; i < bytes; ++i) number = (number << 8) | file[offset + i];
  return number;
}

bool DirectoryIsWithin(std::span<const uint8_t> file, size_t offset) {
  constexpr size_t kHeader = 12;
  constexpr size_t kEntry = 16;
  if (offset > file.size() || file.size() - offset < kHeader) return false;
  const size_t count = Number(file, offset + 4, 2);
  if ((file.size() - offset - kHeader) / kEntry < count) return false;
  for (size_t i = 0; i < count; ++i) {
    const size_t entry = offset + kHeader + i * kEntry;
    const size_t start = Number(file, entry + 8, 4);
    const size_t length = Number(file, entry + 12, 4);
    if (start > file.size() || file.size() - start < length) return false;
  }
  return count > 0;
}

}  // namespace

FontContainer ContainerOf(std::span<const uint8_t> file) {
  if (file.size() < 16) return FontContainer::kNone;
  const std::string_view start(reinterpret_cast<const char*>(file.data()), std::min<size_t>(file.size(), 32));
  switch (Number(file, 0, 4)) {
    case 0x00010000:
    case 0x4F54544F:  // "OTTO"
    case 0x74727565:  // "true"
    case kCollectionTag:
      return FontContainer::kSfnt;
    case 0x774F4646:  // "wOFF"
    case 0x774F4632:  // "wOF2"
      return FontContainer::kWoff;
    case 0x01000401:  // CFF 1.0, header of 4 bytes, offsets of 1 to 4
    case 0x01000402:
    case 0x01000403:
    case 0x01000404:
      return FontContainer::kBareCff;
    default:
      break;
  }
  if (start.starts_with("\x80\x01")) return FontContainer::kType1;
  if (start.starts_with("%!PS-AdobeFont") || start.starts_with("%!FontType1")) return FontContainer::kType1;
  return FontContainer::kNone;
}

bool TablesAreWithin(std::span<const uint8_t> file) {
  if (file.size() < 12) return false;
  if (Number(file, 0, 4) != kCollectionTag) return DirectoryIsWithin(file, 0);
  const size_t count = Number(file, 8, 4);
  if (count == 0 || (file.size() - 12) / 4 < count) return false;
  for (size_t i = 0; i < count; ++i) {
    if (!DirectoryIsWithin(file, Number(file, 12 + i * 4, 4))) return false;
  }
  return true;
}

}  // namespace kiln
