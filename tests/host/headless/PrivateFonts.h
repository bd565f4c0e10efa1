#pragma once

#include <fontconfig/fontconfig.h>

#include <filesystem>
#include <stdexcept>
#include <string>

/// A fontconfig configuration of the test's own, without any fonts until it is given some; it is the
/// process's current one as long as the object lives.
class PrivateFonts {
 public:
  PrivateFonts() : m_pBefore(FcConfigReference(nullptr)), m_pOwn(FcConfigCreate()) {
    FcConfigSetCurrent(m_pOwn);
  }
  ~PrivateFonts() {
    FcConfigSetCurrent(m_pBefore);
    FcConfigDestroy(m_pOwn);
    FcConfigDestroy(m_pBefore);
  }
  PrivateFonts(const PrivateFonts&) = delete;
  PrivateFonts& operator=(const PrivateFonts&) = delete;

  /// Adds a font of the DejaVu families, as an application font.
  void Add(const std::string& fileName) {
    const auto path = std::filesystem::path("/usr/share/fonts/truetype/dejavu") / fileName;
    if (!FcConfigAppFontAddFile(m_pOwn, reinterpret_cast<const FcChar8*>(path.c_str()))) {
      throw std::runtime_error("No font " + path.string());
    }
  }
  void RemoveAll() { FcConfigAppFontClear(m_pOwn); }

 private:
  FcConfig* m_pBefore;
  FcConfig* m_pOwn;
};
