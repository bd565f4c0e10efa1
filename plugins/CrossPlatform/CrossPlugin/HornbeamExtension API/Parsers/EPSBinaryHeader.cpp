#include "Parsers/EPSBinaryHeader.h"

namespace {

constexpr size_t kPostScriptStart = 4;
constexpr size_t kPostScriptLength = 8;
constexpr size_t kTIFFStart = 20;

}  // namespace

bool EPSBinaryHeader::AddToPostScript(int64_t offset, int64_t blockLength) {
  const int64_t start = WordAt(kPostScriptStart);
  const int64_t length = WordAt(kPostScriptLength);
  if (offset < start || offset - start > length) return false;
  int64_t tiffStart = WordAt(kTIFFStart);
  if (offset <= tiffStart) tiffStart += blockLength;
  if (length + blockLength > UINT32_MAX || tiffStart > UINT32_MAX) return false;
  PutWordAt(kTIFFStart, static_cast<uint32_t>(tiffStart));
  PutWordAt(kPostScriptLength, static_cast<uint32_t>(length + blockLength));
  return true;
}

uint32_t EPSBinaryHeader::WordAt(size_t place) const {
  uint32_t word = 0;
  for (size_t i = 4; i-- > 0;) word = word << 8 | static_cast<unsigned char>(m_bytes[place + i]);
  return word;
}

void EPSBinaryHeader::PutWordAt(size_t place, uint32_t word) {
  for (size_t i = 0; i < 4; ++i) m_bytes[place + i] = static_cast<char>(word >> (8 * i));
}
