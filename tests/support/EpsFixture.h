#pragma once

#include <cstdint>
#include <string>
#include <string_view>

/// An EPS file in the making, written as readable lines that end in "\n".
class EpsFixture {
 public:
  explicit EpsFixture(std::string_view text) : m_text(text) {}

  /// What ends a line in the file, "\n" unless told otherwise.
  EpsFixture& LineEnd(const std::string& end) {
    std::string text;
    for (char c : m_text) {
      if (c == '\n') {
        text += end;
      } else {
        text += c;
      }
    }
    m_text = std::move(text);
    return *this;
  }

  /// Puts the DOS EPS binary header in front, and a TIFF preview behind or, with `tiffFirst`, before the
  /// PostScript section.
  EpsFixture& DosHeader(const std::string& tiff = "", bool tiffFirst = false) {
    const size_t start = 32 + (tiffFirst ? tiff.size() : 0);
    const size_t tiffStart = tiff.empty() ? 0 : (tiffFirst ? 32 : 32 + m_text.size());
    std::string header = "\xC5\xD0\xD3\xC6";
    for (size_t word : {start, m_text.size(), size_t{0}, size_t{0}, tiffStart, tiff.size()}) {
      for (int i = 0; i < 4; ++i) header += static_cast<char>(word >> (8 * i));
    }
    header += std::string("\xFF\xFF\0\0", 4);
    m_text = header + (tiffFirst ? tiff + m_text : m_text + tiff);
    return *this;
  }

  const std::string& Bytes() const { return m_text; }

  /// The header's field at an offset.
  static uint32_t Word(std::string_view bytes, size_t offset) {
    uint32_t word = 0;
    for (size_t i = 4; i-- > 0;) word = word << 8 | static_cast<unsigned char>(bytes.at(offset + i));
    return word;
  }

 private:
  std::string m_text;
};
