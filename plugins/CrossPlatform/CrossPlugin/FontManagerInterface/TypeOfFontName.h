#pragma once

/// Which name of a font is meant. An operation that is given any other value gives its failure result.
enum class TypeOfFontName : int {
  kPostScriptName = 0,
  kFamilyName = 1,
};
