#pragma once

#include <CoreFoundation/CoreFoundation.h>

#include <string>
#include <vector>

/// The dialog for fonts that the font manager couldn't match.
///
/// Each record with replacements to choose from ("PossibleReplacements") is shown with them; what the user
/// chooses is written into it under "MatchedFont". Records that are resolved, immutable or of another type
/// are left alone. Without a terminal all of them stay unresolved, which is said.
///
/// \param title  Stands above each font, whose name is put in for "%@".
/// \param prompt  Asks for the number.
/// \param unresolved  Said without a terminal.
void ShowResolveFonts(CFArrayRef problemFonts, const std::string& title, const std::string& prompt,
                      const std::string& unresolved);

/// The PostScript names of the font records in a list, in their order.
std::vector<std::string> FontNames(CFArrayRef fonts);
