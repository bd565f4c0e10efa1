#pragma once

#include <fontconfig/fontconfig.h>

#include <string>
#include <vector>

#include "support/FontBuilder.h"
#include "support/PrivateHome.h"
#include "support/ScopedEnvironment.h"

/// A private home in which fontconfig sees no font, beside files of fonts to work with.
struct FontHome {
  struct Font {
    std::string file;
    std::string postScriptName;
  };

  FontHome() {
    for (const char* style : {"Regular", "Italic", "Bold"}) {
      FontBuilder font;
      font.style = style;
      font.postScriptName = font.family + "-" + style;
      const std::string name = "files/" + font.postScriptName + ".ttf";
      fonts.push_back({home.Folder().Write(name, font.TrueType()), font.postScriptName});
    }
    FcInitReinitialize();
  }

  /// Whether this process sees a font of the file, or of the name.
  static bool IsVisible(const std::string& file) { return Sees(FC_FILE, file); }
  static bool IsNameVisible(const std::string& postScriptName) {
    return Sees(FC_POSTSCRIPT_NAME, postScriptName);
  }

  PrivateHome home;
  ScopedEnvironment noOtherFolders{"XDG_DATA_DIRS", home.Folder().Path("nowhere")};
  std::vector<Font> fonts;

 private:
  static bool Sees(const char* object, const std::string& value) {
    FcPattern* pattern = FcPatternCreate();
    FcPatternAddString(pattern, object, reinterpret_cast<const FcChar8*>(value.c_str()));
    FcObjectSet* objects = FcObjectSetBuild(FC_FILE, nullptr);
    FcFontSet* found = FcFontList(nullptr, pattern, objects);
    const bool sees = found->nfont > 0;
    FcFontSetDestroy(found);
    FcObjectSetDestroy(objects);
    FcPatternDestroy(pattern);
    return sees;
  }
};
