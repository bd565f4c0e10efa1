#pragma once

#include <string>
#include <vector>

#include "KilnConnection.h"

/// A font that an argument of the command line means.
struct NamedFont {
  unsigned int id = 0;
  std::string postScriptName;
  bool isSystem = false;  ///< as FindByID() tells; not looked at by name
};

/// Finds the fonts that the user names, each by its PostScript name or its ID. Thread: main.
class FontFinder {
 public:
  /// Of several fonts of one name.
  enum class Take { kBest, kAll };

  /// \param workgroups  IDs of where the fonts must be; empty for anywhere.
  explicit FontFinder(const KilnConnection& kiln, std::vector<unsigned int> workgroups = {});

  /// Appends the fonts, each once. Complains of each text that means none.
  ///
  /// \return Whether all texts meant a font.
  bool Find(const std::vector<std::string>& texts, Take take, std::vector<NamedFont>& outFonts) const;

  /// \return 0, CoreErrorCodes::kNotFound, or another code of the agent.
  ErrCode FindByID(unsigned int id, NamedFont& outFont) const;

 private:
  ErrCode FindByName(const std::string& name, std::vector<NamedFont>& outFonts) const;

  const KilnConnection& m_kiln;
  const std::vector<unsigned int> m_workgroups;
};

/// A font's ID in decimal; 0 for a text that is none.
unsigned int ParseFontID(const std::string& text);

/// As calls to the agent want them.
std::vector<unsigned int> IDsOf(const std::vector<NamedFont>& fonts);
