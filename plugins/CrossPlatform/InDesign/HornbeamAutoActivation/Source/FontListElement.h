#pragma once

class PMString;

/// One font in a document's font list.
class FontListElement {
 public:
  /// Whether the name can go to the font manager: from 1 to 32 characters, none of them a blank.
  static bool IsValidFontName(const PMString& name);
};
