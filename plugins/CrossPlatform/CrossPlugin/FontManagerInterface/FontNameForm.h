#pragma once

#include <string>

#include "FontManagerInterface/TypeOfFontName.h"

/// One of the forms under which a font is looked up.
struct FontNameForm {
  std::string text;  ///< UTF-8.
  TypeOfFontName type = TypeOfFontName::kPostScriptName;
};
