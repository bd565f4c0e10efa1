#include "headless/InstalledFonts.h"

#include <fontconfig/fontconfig.h>

#include <functional>
#include <memory>

namespace headless {
namespace {

struct ConfigurationRelease {
  void operator()(FcConfig* configuration) const { FcConfigDestroy(configuration); }
};
struct PatternRelease {
  void operator()(FcPattern* pattern) const { FcPatternDestroy(pattern); }
};
using Configuration = std::unique_ptr<FcConfig, ConfigurationRelease>;
using Pattern = std::unique_ptr<FcPattern, PatternRelease>;

// "" when the pattern doesn't have the value.
std::string Text(const FcPattern* pattern, const char* object, int index) {
  FcChar8* value = nullptr;
  if (FcPatternGetString(pattern, object, index, &value) != FcResultMatch) return {};
  return reinterpret_cast<const char*>(value);
}

void Combine(std::size_t& hash, const std::string& text) {
  hash = hash * 1'000'003 + std::hash<std::string>()(text);
}

}  // namespace

bool InstalledFonts::Refresh(Index& index, int set, bool force) {
  const Configuration configuration(FcConfigReference(nullptr));
  const FcFontSet* fonts =
      configuration ? FcConfigGetFonts(configuration.get(), set == 0 ? FcSetSystem : FcSetApplication)
                    : nullptr;
  Stamp stamp{configuration.get(), fonts};
  if (fonts && fonts->nfont > 0) {
    stamp.count = fonts->nfont;
    stamp.first = fonts->fonts[0];
    stamp.last = fonts->fonts[fonts->nfont - 1];
  }
  if (!force && stamp == index.stamp) return false;
  const std::size_t oldHash = index.hash;
  index = Index();
  index.stamp = stamp;
  for (int i = 0; i < stamp.count; ++i) {
    const FcPattern* font = fonts->fonts[i];
    const std::string postScriptName = Text(font, FC_POSTSCRIPT_NAME, 0);
    Combine(index.hash, postScriptName);
    Combine(index.hash, Text(font, FC_FILE, 0));
    if (!postScriptName.empty()) index.names.insert(postScriptName);
    // A face may have several family names, each with the style name beside it; the last style goes on.
    std::string style;
    for (int name = 0;; ++name) {
      const std::string family = Text(font, FC_FAMILY, name);
      if (family.empty()) break;
      if (std::string next = Text(font, FC_STYLE, name); !next.empty()) style = std::move(next);
      index.families[family].push_back({style, postScriptName});
    }
  }
  return index.hash != oldHash;
}

void InstalledFonts::Update(bool force) {
  bool changed = false;
  for (int set = 0; set < kSets; ++set) changed = Refresh(m_indices[set], set, force) || changed;
  if (changed) ++m_nSeed;
}

bool InstalledFonts::Has(const std::string& postScriptName) {
  Update(false);
  for (const Index& index : m_indices) {
    if (index.names.count(postScriptName) != 0) return true;
  }
  return false;
}

std::vector<InstalledFonts::Face> InstalledFonts::FacesOf(const std::string& family) {
  Update(false);
  std::vector<Face> faces;
  for (const Index& index : m_indices) {
    if (const auto found = index.families.find(family); found != index.families.end()) {
      faces.insert(faces.end(), found->second.begin(), found->second.end());
    }
  }
  return faces;
}

std::string InstalledFonts::PostScriptName(const std::string& family, const std::string& style) {
  for (const Face& face : FacesOf(family)) {
    if (face.styleName == style && !face.postScriptName.empty()) return face.postScriptName;
  }
  return {};
}

std::string InstalledFonts::SubstituteName() {
  const Configuration configuration(FcConfigReference(nullptr));
  const Pattern wanted(FcPatternCreate());
  if (!configuration || !wanted) return {};
  FcConfigSubstitute(configuration.get(), wanted.get(), FcMatchPattern);
  FcDefaultSubstitute(wanted.get());
  FcResult result = FcResultNoMatch;
  const Pattern match(FcFontMatch(configuration.get(), wanted.get(), &result));
  return match ? Text(match.get(), FC_POSTSCRIPT_NAME, 0) : std::string();
}

}  // namespace headless
