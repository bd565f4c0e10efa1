#pragma once

#include <fontconfig/fontconfig.h>

#include <string>
#include <vector>

/// Fonts that lie on this machine, as fixtures that real font software takes.
namespace MachineFonts {

struct Font {
  std::string file;
  std::string postScriptName;
};

/// Single-face fonts of different PostScript names, at least four; the same on each call.
const std::vector<Font>& All();

/// Makes fontconfig read the folders of the current environment: fresh for a PrivateHome.
void StartFontconfig();

/// Whether this process sees the file's font.
bool IsVisible(const std::string& file);
/// The same by PostScript name.
bool IsNameVisible(const std::string& postScriptName);

}  // namespace MachineFonts
