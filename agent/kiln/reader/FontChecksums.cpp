#include "kiln/reader/FontChecksums.h"

#include FT_TRUETYPE_TABLES_H

#include <endian.h>
#include <zlib.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <string>
#include <vector>

namespace kiln {
namespace {

constexpr uint32_t kKerningMask = 0xFFFFF;
constexpr FT_ULong kLongestTable = 512u << 20;

uint32_t Add(uint32_t crc, std::span<const uint8_t> bytes) {
  return static_cast<uint32_t>(crc32_z(crc, bytes.data(), bytes.size()));
}

uint32_t AddNumber(uint32_t crc, uint32_t number) {
  const std::array<uint8_t, 4> bytes{static_cast<uint8_t>(number >> 24), static_cast<uint8_t>(number >> 16),
                                     static_cast<uint8_t>(number >> 8), static_cast<uint8_t>(number)};
  return Add(crc, bytes);
}

uint32_t SumOfWords(std::span<const uint8_t> table) {
  uint32_t sum = 0;
  size_t i = 0;
  for (; i + 4 <= table.size(); i += 4) {
    uint32_t word = 0;
    std::memcpy(&word, table.data() + i, sizeof word);
    sum += be32toh(word);
  }
  std::array<uint8_t, 4> rest{};
  std::copy(table.begin() + static_cast<ptrdiff_t>(i), table.end(), rest.begin());
  uint32_t word = 0;
  std::memcpy(&word, rest.data(), sizeof word);
  return sum + be32toh(word);
}

// The tables that are there; `found` tells whether any was.
uint32_t TablesChecksum(FT_Face face, std::span<const FT_ULong> tags, bool& found) {
  uint32_t crc = 0;
  std::vector<uint8_t> table;
  for (const FT_ULong tag : tags) {
    FT_ULong length = 0;
    if (FT_Load_Sfnt_Table(face, tag, 0, nullptr, &length) != 0 || length == 0 || length > kLongestTable)
      continue;
    table.resize(length);
    if (FT_Load_Sfnt_Table(face, tag, 0, table.data(), &length) != 0) continue;
    crc = AddNumber(crc, static_cast<uint32_t>(tag));
    crc = AddNumber(crc, static_cast<uint32_t>(length));
    crc = AddNumber(crc, SumOfWords(table));
    found = true;
  }
  return crc;
}

uint32_t NonZeroKerning(uint32_t crc) {
  return std::max<uint32_t>(crc & kKerningMask, 1);
}

// The data of the segments of a PFB; a broken one is taken as far as it goes.
uint32_t Type1Checksum(std::span<const uint8_t> file) {
  if (file.empty() || file[0] != 0x80) return Add(0, file);
  constexpr size_t kHeader = 6;
  uint32_t crc = 0;
  while (file.size() >= kHeader && file[0] == 0x80 && (file[1] == 1 || file[1] == 2)) {
    const size_t announced =
        file[2] | (size_t{file[3]} << 8) | (size_t{file[4]} << 16) | (size_t{file[5]} << 24);
    const size_t length = std::min(announced, file.size() - kHeader);
    crc = Add(crc, file.subspan(kHeader, length));
    file = file.subspan(kHeader + length);
  }
  return crc;
}

}  // namespace

uint32_t GlyphMarkChecksum(FT_Face face, uint32_t instance, std::span<const uint8_t> file) {
  constexpr FT_ULong kTags[] = {FT_MAKE_TAG('C', 'F', 'F', ' '), FT_MAKE_TAG('C', 'F', 'F', '2'),
                                FT_MAKE_TAG('c', 'm', 'a', 'p'), FT_MAKE_TAG('g', 'l', 'y', 'f'),
                                FT_MAKE_TAG('g', 'v', 'a', 'r'), FT_MAKE_TAG('h', 'm', 't', 'x'),
                                FT_MAKE_TAG('l', 'o', 'c', 'a')};
  bool found = false;
  const uint32_t crc = FT_IS_SFNT(face) ? TablesChecksum(face, kTags, found) : 0;
  if (!found) return Type1Checksum(file);
  return instance == 0 ? crc : AddNumber(crc, instance);
}

uint32_t KerningChecksum(FT_Face face) {
  constexpr FT_ULong kTags[] = {FT_MAKE_TAG('k', 'e', 'r', 'n'), FT_MAKE_TAG('G', 'P', 'O', 'S')};
  bool found = false;
  const uint32_t crc = FT_IS_SFNT(face) ? TablesChecksum(face, kTags, found) : 0;
  return found ? NonZeroKerning(crc) : 0;
}

uint32_t KerningChecksum(std::string_view metrics) {
  std::vector<std::string_view> pairs;
  while (!metrics.empty()) {
    const size_t end = std::min(metrics.find_first_of("\r\n"), metrics.size());
    std::string_view line = metrics.substr(0, end);
    metrics.remove_prefix(std::min(end + 1, metrics.size()));
    const size_t first = line.find_first_not_of(" \t");
    if (first == std::string_view::npos) continue;
    line = line.substr(first, line.find_last_not_of(" \t") - first + 1);
    if (line.starts_with("KP")) pairs.push_back(line);
  }
  if (pairs.empty()) return 0;
  std::sort(pairs.begin(), pairs.end());
  std::string text;
  for (const std::string_view pair : pairs) text.append(pair).push_back('\n');
  return NonZeroKerning(Add(0, {reinterpret_cast<const uint8_t*>(text.data()), text.size()}));
}

}  // namespace kiln
