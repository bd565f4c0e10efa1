#include <gtest/gtest.h>
#include <sys/stat.h>

#include <algorithm>
#include <filesystem>

#include "kiln/activation/LinkFolder.h"
#include "protocol/ErrorCodes.h"
#include "support/TemporaryFolder.h"

namespace kiln {
namespace {

namespace fs = std::filesystem;

class LinkFolderTest : public testing::Test {
 protected:
  std::string VaultFile(const std::string& name) {
    return mFolder.Write("vault/" + name, "content of " + name);
  }
  std::string Add(const std::string& file, const std::string& name) {
    std::string link;
    EXPECT_EQ(mLinks.Add(file, name, link), codes::kSuccess);
    return link;
  }
  std::vector<std::string> Names() {
    std::vector<std::string> names;
    if (!fs::exists(mFolder.Path("fonts"))) return names;
    for (const auto& entry : fs::recursive_directory_iterator(mFolder.Path("fonts"))) {
      names.push_back(fs::relative(entry.path(), mFolder.Path("fonts")).string());
    }
    std::sort(names.begin(), names.end());
    return names;
  }

  TemporaryFolder mFolder;
  LinkFolder mLinks{mFolder.Path("fonts"), mFolder.MakeFolder("vault")};
};

TEST_F(LinkFolderTest, AFileIsLinkedUnderItsOwnNameAndGoesWithItsBucket) {
  const std::string file = VaultFile("ab12.otf");
  EXPECT_EQ(Add(file, "Lato Bold.otf"), "000/Lato Bold.otf");
  struct stat linked {};
  ASSERT_EQ(lstat(mFolder.Path("fonts/000/Lato Bold.otf").c_str(), &linked), 0);
  EXPECT_TRUE(S_ISREG(linked.st_mode));
  EXPECT_EQ(linked.st_nlink, 2u) << "a hard link, no copy";
  mLinks.Remove("000/Lato Bold.otf", file);
  EXPECT_TRUE(Names().empty());
  EXPECT_TRUE(fs::exists(file));
}

TEST_F(LinkFolderTest, BucketsHoldFiftyAndAreFilledUpAgain) {
  const std::string file = VaultFile("a.ttf");
  for (int i = 0; i < 120; ++i) Add(file, "f" + std::to_string(i) + ".ttf");
  for (const char* bucket : {"000", "001"}) {
    EXPECT_EQ(std::distance(fs::directory_iterator(mFolder.Path("fonts") + "/" + bucket), {}), 50);
  }
  mLinks.Remove("000/f7.ttf", file);
  EXPECT_EQ(Add(file, "new.ttf"), "000/new.ttf");
}

TEST_F(LinkFolderTest, NamesThatCollideOrAreUnfitFindAPlace) {
  const std::string file = VaultFile("a.ttf");
  EXPECT_EQ(Add(file, "Same.ttf"), "000/Same.ttf");
  EXPECT_EQ(Add(file, "Same.ttf"), "001/Same.ttf");
  EXPECT_EQ(Add(file, ".hidden.ttf"), "000/font.hidden.ttf") << "fontconfig passes over leading dots";
  EXPECT_EQ(Add(file, ""), "000/font");
  const std::string longName = Add(file, std::string(400, 'x') + ".ttf");
  EXPECT_TRUE(longName.ends_with("x.ttf"));
  mFolder.Write("fonts/000/Stranger.ttf", "someone else's");
  EXPECT_EQ(Add(file, "Stranger.ttf"), "001/Stranger.ttf");
  EXPECT_EQ(mFolder.Read("fonts/000/Stranger.ttf"), "someone else's");
}

TEST_F(LinkFolderTest, AFileThatHasGoneIsTold) {
  std::string link;
  EXPECT_EQ(mLinks.Add(mFolder.Path("vault/nothing.ttf"), "a.ttf", link), codes::kFontMissing);
  EXPECT_TRUE(Names().empty()) << "no empty bucket stays";
}

TEST_F(LinkFolderTest, ReconcilingRestoresWhatHasGoneAndRemovesWhatIsLeftOver) {
  const std::string kept = VaultFile("kept.ttf");
  const std::string gone = VaultFile("gone.ttf");
  const std::string stale = VaultFile("stale.ttf");
  Add(kept, "kept.ttf");
  Add(stale, "stale.ttf");
  mFolder.Write("fonts/000/the only copy.ttf", "x");
  mFolder.Write("fonts/notes/readme", "not a bucket");
  LinkFolder later(mFolder.Path("fonts"), mFolder.Path("vault"));
  const std::vector<std::string> lost =
      later.Reconcile({{kept, "000/kept.ttf", 0},
                       {gone, "003/gone.ttf", 0},
                       {mFolder.Path("vault/lost.ttf"), "004/lost.ttf", 5}});
  EXPECT_EQ(lost, std::vector<std::string>{"004/lost.ttf"});
  EXPECT_EQ(Names(), (std::vector<std::string>{"000", "000/kept.ttf", "000/the only copy.ttf", "003",
                                               "003/gone.ttf", "notes", "notes/readme"}));
}

TEST_F(LinkFolderTest, ReconcilingPutsTheRightFileInPlaceOfAnother) {
  const std::string file = VaultFile("right.ttf");
  mFolder.Write("fonts/000/a.ttf", "wrong");
  EXPECT_TRUE(mLinks.Reconcile({{file, "000/a.ttf", 0}}).empty());
  EXPECT_EQ(mFolder.Read("fonts/000/a.ttf"), "content of right.ttf");
}

}  // namespace
}  // namespace kiln
