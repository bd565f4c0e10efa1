#pragma once

#include <cstdint>
#include <string>
#include <vector>

/// Small but whole fonts, so that a test says what its font is called instead of hoping for one on the
/// machine. Each has the glyphs .notdef and A.
struct FontBuilder {
  std::string postScriptName = "Testa-Regular";
  std::string family = "Testa";
  std::string style = "Regular";
  std::string typographicFamily = {};  ///< none when empty
  std::string version = "Version 1.000";
  std::string vendor = "TEST";    ///< four characters
  std::string manufacturer = {};  ///< none when empty
  std::string kern = {};          ///< bytes of a kern table; none when empty

  std::string TrueType() const;
  std::string OpenType() const;  ///< with CFF outlines
  std::string Type1() const;     ///< as PFA
  /// The same as PFB, in segments.
  std::string Type1Segments() const;

  static std::string Collection(const std::vector<FontBuilder>& fonts);

 private:
  std::string Sfnt(bool cff, size_t offset) const;
};
