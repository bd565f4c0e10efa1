#include <gtest/gtest.h>
#include <sys/stat.h>

#include <algorithm>

#include "kiln/fonts/FontCopier.h"
#include "protocol/ErrorCodes.h"
#include "support/TemporaryFolder.h"

namespace kiln {
namespace {

class FontCopierTest : public testing::Test {
 protected:
  // What the copy is called; empty when there is none.
  std::string Copy(const std::string& name, const std::string& metrics = "") {
    std::string copy;
    mCode = mCopier.Copy(mSource, name, metrics, copy);
    return copy.empty() ? copy : copy.substr(mTarget.size() + 1);
  }

  TemporaryFolder mFolder;
  const std::string mSource = mFolder.Write("source", "a font");
  const std::string mTarget = mFolder.Path("new/target");
  std::atomic<bool> mStopped = false;
  FontCopier mCopier{mTarget, mStopped};
  uint32_t mCode = 0;
};

TEST_F(FontCopierTest, NamesNeverCollideWhateverTheirCase) {
  mFolder.Write("new/target/LATO.OTF", "the user's");
  mFolder.Write("new/target/lato 2.otf", "the user's");
  ASSERT_EQ(mCopier.Prepare(), codes::kSuccess);
  EXPECT_EQ(Copy("Lato.otf"), "Lato 3.otf");
  EXPECT_EQ(Copy("lato.otf"), "lato 4.otf");
  EXPECT_EQ(Copy("Étoile"), "Étoile");
  EXPECT_EQ(Copy("étoile"), "étoile 2");
  mFolder.Write("new/target/Late.otf", "made meanwhile");
  EXPECT_EQ(Copy("Late.otf"), "Late 2.otf");
  EXPECT_EQ(mFolder.Read("new/target/Late.otf"), "made meanwhile");
  const std::string longest = std::string(250, 'x') + ".otf";
  EXPECT_EQ(Copy(longest), longest);
  EXPECT_EQ(Copy(longest), std::string(249, 'x') + " 2.otf");
}

TEST_F(FontCopierTest, MetricsHaveTheirFontsName) {
  const std::string metrics = mFolder.Write("source.afm", "metrics");
  mFolder.Write("new/target/Old.afm", "the user's");
  ASSERT_EQ(mCopier.Prepare(), codes::kSuccess);
  EXPECT_EQ(Copy("Old.pfb", metrics), "Old 2.pfb");
  EXPECT_EQ(mFolder.Read("new/target/Old 2.afm"), "metrics");
  EXPECT_EQ(Copy("New.pfb", mFolder.Path("nowhere.afm")), "") << "not without its metrics";
  EXPECT_EQ(mCode, codes::kCouldNotCopyFile);
  EXPECT_FALSE(std::filesystem::exists(mTarget + "/New.pfb"));
}

TEST_F(FontCopierTest, WhatCantBeCopiedWholeIsNotThere) {
  ASSERT_EQ(mCopier.Prepare(), codes::kSuccess);
  mStopped = true;
  EXPECT_EQ(Copy("a.otf"), "");
  mStopped = false;
  const std::string pipe = mFolder.Path("pipe");
  ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
  std::string copy;
  EXPECT_EQ(mCopier.Copy(pipe, "a.otf", "", copy), codes::kCouldNotCopyFile)
      << "without waiting for a writer";
  EXPECT_EQ(mCopier.Copy(mFolder.Path("nothing"), "a.otf", "", copy), codes::kFontMissing);
  EXPECT_TRUE(std::filesystem::is_empty(mTarget));
  EXPECT_EQ(Copy("a.otf"), "a.otf") << "the name is free still";
  EXPECT_EQ(FontCopier(mSource, mStopped).Prepare(), codes::kCouldNotCreateFolder);
}

}  // namespace
}  // namespace kiln
