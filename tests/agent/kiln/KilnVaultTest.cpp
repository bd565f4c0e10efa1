// Files that go from a real Kiln's vault, and come back.

#include <unistd.h>

#include <filesystem>
#include <fstream>

#include "KilnTestHome.h"
#include "protocol/ErrorCodes.h"

namespace kiln {
namespace {

namespace fs = std::filesystem;

class KilnVaultTest : public KilnTestHome {
 protected:
  KilnVaultTest() {
    StartKiln();
    mClient = std::make_unique<WireClient>();
    mClient->AddFiles({FontFile("Testa-Regular")});
    mFont = mClient->IdOf("Testa-Regular");
    wire::ClientMessage request;
    request.mutable_font_info()->set_font_id(mFont);
    mPath = mClient->Ask(request).font_info().font().path();
  }
  // What is noticed, is noticed some moments later.
  template <class Condition>
  static bool Comes(Condition condition) {
    for (int i = 0; i < 1500; ++i) {
      if (condition()) return true;
      usleep(10000);
    }
    return false;
  }
  bool BecomesState(wire::ActivationState state) {
    return Comes([&] { return mClient->StateOf(mFont) == state; });
  }
  wire::RescanReply Rescan() {
    wire::ClientMessage request;
    request.mutable_rescan();
    return mClient->Ask(request).rescan();
  }

  std::unique_ptr<WireClient> mClient;
  uint32_t mFont = 0;
  std::string mPath;
};

TEST_F(KilnVaultTest, AFileThatGoesIsToldOnceAndForgivenWhenItReturns) {
  fs::rename(mPath, mFiles.Path("aside"));
  const auto event = mClient->WaitForEvent(wire::ServerMessage::kFontsMissing);
  ASSERT_TRUE(event);
  EXPECT_EQ(event->fonts_missing().font_ids(0), mFont);
  EXPECT_EQ(mClient->StateOf(mFont), wire::ACTIVATION_MISSING);
  fs::rename(mFiles.Path("aside"), mPath);
  EXPECT_TRUE(BecomesState(wire::ACTIVATION_INACTIVE));
  // A whole folder of the vault, and then the vault.
  for (const fs::path& folder :
       {fs::path(mPath).parent_path(), fs::path(mPath).parent_path().parent_path()}) {
    fs::rename(folder, mFiles.Path("folder"));
    EXPECT_TRUE(mClient->WaitForEvent(wire::ServerMessage::kFontsMissing)) << folder;
    fs::rename(mFiles.Path("folder"), folder);
    EXPECT_TRUE(BecomesState(wire::ACTIVATION_INACTIVE)) << folder;
  }
}

TEST_F(KilnVaultTest, AnActiveFontsFileIsPutBackFromItsLink) {
  mClient->Activate({mFont}, wire::MODE_PERMANENT);
  fs::remove(mPath);
  EXPECT_TRUE(Comes([this] { return fs::exists(mPath); }));
  EXPECT_EQ(mClient->StateOf(mFont), wire::ACTIVATION_PERMANENT);
  fs::remove(mPath);
  mClient->Deactivate({mFont}, true);
  EXPECT_TRUE(fs::exists(mPath)) << "also when it is given back before that was noticed";
  EXPECT_EQ(Rescan().missing_ids_size(), 0);
}

TEST_F(KilnVaultTest, AnActiveFontThatHasGoneForGoodIsActiveAgainWhenItsFileReturns) {
  const std::string font = mFiles.Read("Testa-Regular.ttf");
  mClient->OpenDocument({"Testa-Regular"});
  fs::remove(mHome.Folder().Path("data/fonts/kiln/000/Testa-Regular.ttf"));
  fs::remove(mPath);
  EXPECT_TRUE(mClient->WaitForEvent(wire::ServerMessage::kFontsDeactivated));
  EXPECT_TRUE(mClient->WaitForEvent(wire::ServerMessage::kFontsMissing));
  EXPECT_EQ(mClient->StateOf(mFont), wire::ACTIVATION_MISSING);
  EXPECT_TRUE(mClient->Holds(mFont)) << "its document is open still";
  std::ofstream(mPath) << font;
  EXPECT_TRUE(BecomesState(wire::ACTIVATION_AUTO));
  EXPECT_TRUE(FcListShows("Testa-Regular"));
}

// A file that is cut short in its place: what was noted of it isn't there any more.
TEST_F(KilnVaultTest, AFileThatWasCutShortIsUnusableUntilItIsAddedAgain) {
  fs::resize_file(mPath, 100);
  EXPECT_EQ(mClient->Activate({mFont}, wire::MODE_PERMANENT).failed_ids_size(), 1);
  EXPECT_EQ(mClient->StateOf(mFont), wire::ACTIVATION_UNUSABLE);
  const wire::ActivateDocumentFontsReply reply = mClient->OpenDocument({"Testa-Regular"});
  ASSERT_EQ(reply.problems_size(), 1);
  EXPECT_EQ(reply.problems(0).reason(), wire::ProblemFont::ACTIVATION_FAILED);
  EXPECT_EQ(reply.problems(0).error(), codes::kCorrupt);
  const wire::RescanReply report = Rescan();
  EXPECT_EQ(report.missing_ids_size(), 0);
  EXPECT_EQ(report.unusable_ids_size(), 1);

  mClient->AddFiles({mFiles.Path("Testa-Regular.ttf")});
  EXPECT_EQ(fs::file_size(mPath), fs::file_size(mFiles.Path("Testa-Regular.ttf")));
  mClient->OpenDocument({"Testa-Regular"});
  EXPECT_TRUE(FcListShows("Testa-Regular"));
}

TEST_F(KilnVaultTest, AFileThatIsCutShortIsNoticedAndItsLinkFollowsWhatReplacesIt) {
  fs::resize_file(mPath, 100);
  EXPECT_TRUE(BecomesState(wire::ACTIVATION_UNUSABLE));
  mClient->AddFiles({mFiles.Path("Testa-Regular.ttf")});
  EXPECT_EQ(mClient->StateOf(mFont), wire::ACTIVATION_INACTIVE);
  mClient->Activate({mFont}, wire::MODE_PERMANENT);
  fs::resize_file(mPath, 100);
  mClient->AddFiles({mFiles.Path("Testa-Regular.ttf")});
  const std::string link = mHome.Folder().Path("data/fonts/kiln/000/Testa-Regular.ttf");
  EXPECT_TRUE(Comes([&] { return fs::equivalent(link, mPath); }));
}

TEST_F(KilnVaultTest, WhatWentWhileNoKilnRanIsFoundAtItsStartAndByARescan) {
  KillKiln();
  fs::remove(mPath);
  StartKiln();
  mClient = std::make_unique<WireClient>();
  EXPECT_TRUE(BecomesState(wire::ACTIVATION_MISSING));
  const wire::RescanReply reply = Rescan();
  EXPECT_EQ(reply.files_checked(), 1u);
  ASSERT_EQ(reply.missing_ids_size(), 1);
  EXPECT_EQ(reply.missing_ids(0), mFont);
}

}  // namespace
}  // namespace kiln
