#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

/// The first 32 bytes of an EPS file: the DOS EPS binary file header of Adobe's published EPS format (5002),
/// all fields little-endian, when the file has one.
class EPSBinaryHeader {
 public:
  static constexpr size_t kSize = 32;

  /// Zeros. Fill Bytes() from the file.
  EPSBinaryHeader() = default;

  std::array<char, kSize>& Bytes() { return m_bytes; }
  const std::array<char, kSize>& Bytes() const { return m_bytes; }

  /// The first four bytes for IsMacEPS() and IsWindowsEPS().
  long FirstWord() const { return static_cast<long>(WordAt(0)); }

  uint32_t PostScriptStart() const { return WordAt(4); }

  /// Makes the fields right for a block that was put into the PostScript section.
  ///
  /// The WMF section's start stays as it is, so a WMF preview behind the PostScript section can't be found
  /// any more; PostScript comes last in the files that have one.
  ///
  /// \param offset  The block's offset in the file.
  /// \return False when the offset isn't in the PostScript section or a field would not fit its 32 bits;
  ///         nothing is changed then.
  bool AddToPostScript(int64_t offset, int64_t blockLength);

  friend bool operator==(const EPSBinaryHeader&, const EPSBinaryHeader&) = default;

 private:
  uint32_t WordAt(size_t place) const;
  void PutWordAt(size_t place, uint32_t word);

  std::array<char, kSize> m_bytes{};
};
