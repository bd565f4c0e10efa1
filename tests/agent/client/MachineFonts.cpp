#include "MachineFonts.h"

#include <memory>
#include <set>

#include "support/ScopedEnvironment.h"

namespace {

using FontSet = std::unique_ptr<FcFontSet, decltype(&FcFontSetDestroy)>;

FontSet List(FcConfig* config, const char* object, const std::string& value) {
  std::unique_ptr<FcPattern, decltype(&FcPatternDestroy)> pattern(FcPatternCreate(), &FcPatternDestroy);
  if (!value.empty()) {
    FcPatternAddString(pattern.get(), object, reinterpret_cast<const FcChar8*>(value.c_str()));
  }
  std::unique_ptr<FcObjectSet, decltype(&FcObjectSetDestroy)> objects(
      FcObjectSetBuild(FC_FILE, FC_POSTSCRIPT_NAME, FC_INDEX, FC_VARIABLE, nullptr), &FcObjectSetDestroy);
  return {FcFontList(config, pattern.get(), objects.get()), &FcFontSetDestroy};
}

std::string Text(const FcPattern* pattern, const char* object) {
  FcChar8* text = nullptr;
  return FcPatternGetString(pattern, object, 0, &text) == FcResultMatch ? reinterpret_cast<char*>(text) : "";
}

}  // namespace

const std::vector<MachineFonts::Font>& MachineFonts::All() {
  static const std::vector<Font> fonts = [] {
    ScopedEnvironment machine("FONTCONFIG_FILE", std::nullopt);
    FcConfig* config = FcInitLoadConfigAndFonts();
    const FontSet set = List(config, FC_FILE, "");
    std::vector<Font> found;
    std::set<std::string> names;
    for (int i = 0; i < set->nfont; ++i) {
      Font font{Text(set->fonts[i], FC_FILE), Text(set->fonts[i], FC_POSTSCRIPT_NAME)};
      const bool wanted = font.file.ends_with(".ttf") || font.file.ends_with(".otf");
      if (wanted && !font.postScriptName.empty() && names.insert(font.postScriptName).second) {
        found.push_back(font);
      }
    }
    FcConfigDestroy(config);
    return found;
  }();
  return fonts;
}

void MachineFonts::StartFontconfig() {
  FcInitReinitialize();
}

bool MachineFonts::IsVisible(const std::string& file) {
  return List(nullptr, FC_FILE, file)->nfont > 0;
}

bool MachineFonts::IsNameVisible(const std::string& postScriptName) {
  return List(nullptr, FC_POSTSCRIPT_NAME, postScriptName)->nfont > 0;
}
