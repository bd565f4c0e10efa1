#pragma once

#include <functional>

#include "CPMUnknown.h"
#include "IFontMgr.h"
#include "headless/InstalledFonts.h"

namespace headless {

/// The session's IFontMgr, over the fonts of this process.
class FontManager final : public CPMUnknown<IFontMgr> {
 public:
  /// \param fonts  Outlives the object.
  /// \param onRefresh  Called by Refresh().
  FontManager(IPMUnknown* boss, InstalledFonts& fonts, std::function<void()> onRefresh)
      : CPMUnknown(boss), m_fonts(fonts), m_onRefresh(std::move(onRefresh)) {}

  IPMFont* QueryFont(const PMString& postscriptName, uint32 flags) override;
  int32 GetFontChangeSeed(bool update, bool force) override;
  void Refresh() override { m_onRefresh(); }

 private:
  InstalledFonts& m_fonts;
  std::function<void()> m_onRefresh;
};

}  // namespace headless
