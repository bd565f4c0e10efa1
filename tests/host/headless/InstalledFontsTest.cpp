#include <gtest/gtest.h>

#include "CPMUnknown.h"
#include "InterfacePtr.h"
#include "PrivateFonts.h"
#include "headless/Boss.h"
#include "headless/FontManager.h"
#include "headless/InstalledFonts.h"

namespace {

using headless::InstalledFonts;

TEST(InstalledFontsTest, SeedChangesWithTheFontsAndOnlyThen) {
  PrivateFonts process;
  InstalledFonts fonts;
  process.Add("DejaVuSans.ttf");
  fonts.Update(false);
  const auto seed = fonts.Seed();
  fonts.Update(true);
  EXPECT_EQ(fonts.Seed(), seed);
  // As many fonts as before, and maybe at the same addresses.
  process.RemoveAll();
  process.Add("DejaVuSans-Bold.ttf");
  fonts.Update(true);
  EXPECT_NE(fonts.Seed(), seed);
}

TEST(FontManagerTest, SubstitutesOnlyWhenItMay) {
  PrivateFonts process;
  InstalledFonts fonts;
  const InterfacePtr<headless::Boss> boss(new headless::Boss());
  IFontMgr* manager = boss->Emplace<headless::FontManager>(fonts, [] {});
  EXPECT_FALSE(InterfacePtr<IPMFont>(manager->QueryFont("DejaVuSans", IFontMgr::kNoSubstitution)));
  process.Add("DejaVuSans-Bold.ttf");
  EXPECT_FALSE(InterfacePtr<IPMFont>(manager->QueryFont("DejaVuSans", IFontMgr::kNoSubstitution)));
  const InterfacePtr<IPMFont> substitute(manager->QueryFont("DejaVuSans", 0));
  ASSERT_TRUE(substitute);
  EXPECT_EQ(substitute->GetPostscriptName(), "DejaVuSans-Bold");
}

}  // namespace
