#pragma once

#include <cstdint>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace headless {

/// The fonts that this process can set text in: fontconfig's current configuration, system fonts and
/// application fonts alike, whoever added them.
///
/// Nothing here makes fontconfig look at its folders again, since that would drop the application fonts of
/// whoever added them; who adds or removes fonts brings the configuration up to date himself. A change is
/// seen by the next question when the number of fonts or the configuration changed, and by Update() in any
/// case.
///
/// Thread: main, as fontconfig's own sets may not change while they are read.
class InstalledFonts {
 public:
  struct Face {
    std::string styleName;
    std::string postScriptName;  ///< May be empty.
  };

  /// Looks at the configuration.
  ///
  /// \param force  Reads the sets whole even if nothing seems to have changed.
  void Update(bool force);

  /// Another number each time the fonts were found to have changed.
  std::int32_t Seed() const { return m_nSeed; }

  /// Whether there is a font of exactly this PostScript name.
  bool Has(const std::string& postScriptName);

  /// The faces of a family, system fonts first; empty when it isn't installed.
  std::vector<Face> FacesOf(const std::string& family);

  /// The PostScript name of the face with exactly this family and style name; "" when there is none.
  std::string PostScriptName(const std::string& family, const std::string& style);

  /// The PostScript name of the font that stands in for one that isn't there; "" without any font.
  static std::string SubstituteName();

 private:
  /// What can be told of a font set without reading it.
  struct Stamp {
    const void* configuration = nullptr;
    const void* set = nullptr;
    int count = 0;
    const void* first = nullptr;
    const void* last = nullptr;
    bool operator==(const Stamp&) const = default;
  };
  struct Index {
    Stamp stamp;
    std::size_t hash = 0;
    std::unordered_set<std::string> names;
    std::unordered_map<std::string, std::vector<Face>> families;
  };

  static constexpr int kSets = 2;  // FcSetSystem and FcSetApplication.

  static bool Refresh(Index& index, int set, bool force);

  Index m_indices[kSets];
  std::int32_t m_nSeed = 1;
};

}  // namespace headless
