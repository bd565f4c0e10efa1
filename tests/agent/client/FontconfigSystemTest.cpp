#include <gtest/gtest.h>

#include <filesystem>

#include "FontHome.h"
#include "client/FontconfigSystem.h"

namespace {

class FontconfigSystemTest : public testing::Test {
 protected:
  // As another program would: into the folder that fontconfig watches.
  std::string Install(size_t index) {
    std::string file = m_home.Folder().Path("data/fonts/installed" + std::to_string(index) + ".ttf");
    std::filesystem::copy_file(File(index), file);
    return file;
  }
  const std::string& File(size_t index) const { return m_fonts.fonts.at(index).file; }
  static bool IsVisible(const std::string& file) { return FontHome::IsVisible(file); }

  FontHome m_fonts;
  PrivateHome& m_home = m_fonts.home;
  std::unique_ptr<FontconfigSystem> m_system = std::make_unique<FontconfigSystem>();
};

TEST_F(FontconfigSystemTest, AddsAndRemovesSingleFiles) {
  EXPECT_FALSE(IsVisible(File(0)));
  EXPECT_EQ(m_system->AddFiles({File(0), File(1), File(2)}), std::vector<bool>(3, true));
  m_system->RemoveFiles({File(0)});
  EXPECT_FALSE(IsVisible(File(0)));
  EXPECT_TRUE(IsVisible(File(1)));
  EXPECT_TRUE(IsVisible(File(2)));
  m_system->RemoveFiles({File(1), File(2)});
  EXPECT_FALSE(IsVisible(File(1)));
  EXPECT_EQ(FcConfigGetFonts(nullptr, FcSetApplication), nullptr);
}

TEST_F(FontconfigSystemTest, TellsWhatIsNoFont) {
  const std::string noFont = m_home.Folder().Write("text.ttf", "not a font");
  const std::vector<bool> expected{false, true, false};
  EXPECT_EQ(m_system->AddFiles({noFont, File(0), "/nowhere.otf"}), expected);
}

TEST_F(FontconfigSystemTest, ReloadingShowsNewFilesAndKeepsTheAddedOnes) {
  m_system->AddFiles({File(0)});
  const std::string installed = Install(1);
  EXPECT_EQ(m_system->CountInFolders({installed}), 0u);
  m_system->Reload();
  EXPECT_EQ(m_system->CountInFolders({installed, File(0)}), 1u);
  EXPECT_TRUE(IsVisible(installed));
  EXPECT_TRUE(IsVisible(File(0)));
  m_system->ForgetFiles({File(0)});
  m_system->Reload();
  EXPECT_FALSE(IsVisible(File(0)));
}

TEST_F(FontconfigSystemTest, FindsTheFilesAgainAfterTheHostHasReinitialised) {
  m_system->AddFiles({File(0)});
  FcInitReinitialize();
  EXPECT_FALSE(IsVisible(File(0)));
  EXPECT_TRUE(m_system->IsStale());
  m_system->AddFiles({File(1)});
  EXPECT_TRUE(IsVisible(File(0)));
  EXPECT_TRUE(IsVisible(File(1)));

  FcInitReinitialize();
  m_system->RemoveFiles({File(1)});
  EXPECT_TRUE(IsVisible(File(0)));
  EXPECT_FALSE(IsVisible(File(1)));
}

TEST_F(FontconfigSystemTest, TakesOverTheRescanOnlyWhileItHasFiles) {
  const int before = FcConfigGetRescanInterval(nullptr);
  EXPECT_EQ(m_system->CheckInterval().count(), 0);
  m_system->AddFiles({File(0)});
  EXPECT_EQ(FcConfigGetRescanInterval(nullptr), 0);
  EXPECT_EQ(m_system->CheckInterval().count(), before);
  m_system->Reload();
  EXPECT_EQ(FcConfigGetRescanInterval(nullptr), 0);
  EXPECT_EQ(m_system->CheckInterval().count(), before);
  m_system->RemoveFiles({File(0)});
  EXPECT_EQ(FcConfigGetRescanInterval(nullptr), before);
  EXPECT_EQ(m_system->CheckInterval().count(), 0);
}

TEST_F(FontconfigSystemTest, AReaderOfTheReplacedConfigurationIsNotCutOff) {
  Install(1);
  m_system->Reload();
  const FcFontSet* walked = FcConfigGetFonts(nullptr, FcSetSystem);  // without a reference, as hosts do
  m_system->Reload();
  FcChar8* file = nullptr;
  ASSERT_EQ(walked->nfont, 1);
  EXPECT_EQ(FcPatternGetString(walked->fonts[0], FC_FILE, 0, &file), FcResultMatch);
}

}  // namespace
