#include <gmock/gmock.h>
#include <sys/mount.h>

#include <filesystem>

#include "FaultTest.h"
#include "support/FontBuilder.h"

namespace {

using testing::HasSubstr;

constexpr int kFonts = 12;

/// A library on a disk of its own, with room for some of the fonts.
class FullDiskTest : public FaultTest {
 protected:
  ~FullDiskTest() override {
    KillKiln();
    if (mounted) umount2(Library().c_str(), MNT_DETACH);
  }

  std::string Library() const { return home.Folder().Path("data/kiln"); }

  bool MountDisk(const char* size, unsigned long flags = 0) {
    home.Folder().MakeFolder("data/kiln");
    const std::string options = std::string("size=") + size;
    mounted = mount("tmpfs", Library().c_str(), "tmpfs", flags, options.c_str()) == 0 || mounted;
    return mounted;
  }

  struct Result {
    int exitCode;
    std::string output, errors;
  };
  static Result Run(const std::vector<std::string>& arguments) {
    ProgramRun run(kHornbeam, arguments);
    const int exitCode = run.Wait();
    return {exitCode, run.Output(), run.Errors()};
  }

  long CountVaultFiles() const {
    const std::filesystem::recursive_directory_iterator files(Library() + "/vault");
    return std::count_if(begin(files), end(files), [](const auto& entry) { return entry.is_regular_file(); });
  }

  bool mounted = false;
};

TEST_F(FullDiskTest, WhatFitsIsAddedAndTheRestOnceThereIsRoom) {
  if (!MountDisk("3m")) GTEST_SKIP() << "This user may not mount a small disk";
  for (int i = 0; i < kFonts; ++i) {
    FontBuilder font;
    font.postScriptName = "Large-" + std::to_string(i);
    home.Folder().Write("fonts/" + font.postScriptName + ".ttf", font.TrueType() + std::string(400'000, ' '));
  }
  const std::vector<std::string> add{"library", "add", home.Folder().Path("fonts")};
  const Result full = Run(add);
  EXPECT_EQ(full.exitCode, 1);
  EXPECT_THAT(full.errors, HasSubstr("The disk is full."));

  const std::string list = Run({"library", "list", "--json"}).output;
  const long added = std::count(list.begin(), list.end(), '\n');
  EXPECT_GT(added, 0);
  EXPECT_LT(added, kFonts);
  EXPECT_EQ(CountVaultFiles(), added) << "nothing half written stays";

  ASSERT_TRUE(MountDisk("64m", MS_REMOUNT));
  const Result again = Run(add);
  EXPECT_EQ(again.exitCode, 0) << again.errors;
  EXPECT_EQ(CountVaultFiles(), kFonts);
}

}  // namespace
