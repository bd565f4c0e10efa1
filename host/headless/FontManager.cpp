#include "headless/FontManager.h"

#include <string>
#include <utility>

namespace headless {
namespace {

class HostFont final : public CPMUnknown<IPMFont> {
 public:
  explicit HostFont(std::string postScriptName)
      : CPMUnknown(nullptr), m_postScriptName(std::move(postScriptName)) {}
  PMString GetPostscriptName() const override { return m_postScriptName; }

 private:
  PMString m_postScriptName;
};

}  // namespace

IPMFont* FontManager::QueryFont(const PMString& postscriptName, uint32 flags) {
  if (m_fonts.Has(postscriptName.GetUTF8String())) return new HostFont(postscriptName.GetUTF8String());
  if ((flags & kNoSubstitution) != 0) return nullptr;
  std::string substitute = InstalledFonts::SubstituteName();
  return substitute.empty() ? nullptr : new HostFont(std::move(substitute));
}

int32 FontManager::GetFontChangeSeed(bool update, bool force) {
  if (update) m_fonts.Update(force);
  return m_fonts.Seed();
}

}  // namespace headless
