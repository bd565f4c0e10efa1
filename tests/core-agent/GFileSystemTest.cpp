#include <gtest/gtest.h>
#include <unistd.h>

#include "GFileSystem.h"
#include "support/ScopedEnvironment.h"
#include "support/TemporaryFolder.h"

TEST(GFileSystemSpec, TakesPathsAsUsersWriteThem) {
  const ScopedEnvironment home("HOME", "/nowhere/home");
  const struct {
    std::string text;
    std::string path;
  } kCases[] = {
      {"\"/tmp/a b\"", "/tmp/a b"},
      {"~", "/nowhere/home"},
      {"~/Fonts/", "/nowhere/home/Fonts"},
      {"~no-such-user-here/x", GFileSystem::OSGetCWD() + "/~no-such-user-here/x"},
      {"some//./part", GFileSystem::OSGetCWD() + "/some/part"},
      {"/a/b/../../..//c", "/c"},
      {"/", "/"},
      {"", ""},
      {"\"\"", ""},
  };
  for (const auto& [text, path] : kCases) EXPECT_EQ(GFileSystemSpec(text).GetFullPath(), path) << text;
}

TEST(GFileSystemSpec, RefusesPartialPathsAndKeepsWhatItHad) {
  GFileSystemSpec spec("/tmp");
  EXPECT_EQ(spec.SetFullPath("part/of"), CoreErrorCodes::kInvalidParam);
  EXPECT_EQ(spec.SetFullPath(std::string("/a\0b", 4)), CoreErrorCodes::kInvalidParam);
  EXPECT_EQ(spec.SetFullPath("/" + std::string(5000, 'x')), CoreErrorCodes::kInvalidParam);
  EXPECT_EQ(spec.GetFullPath(), "/tmp");
  EXPECT_EQ(spec.SetFullPath(""), 0u);
  EXPECT_TRUE(spec.IsEmpty());
}

TEST(GFileSystemSpec, JoinsAndCutsComponents) {
  GFileSystemSpec spec("/a");
  spec.AppendPathComponent("//b/c/");
  EXPECT_EQ(spec.GetFullPath(), "/a/b/c");
  EXPECT_EQ(spec.GetLastPathComponent(), "c");
  for (const char* expected : {"/a/b", "/a", "/", "/"}) {
    spec.RemoveLastPathComponent();
    EXPECT_EQ(spec.GetFullPath(), expected);
  }
}

TEST(GFileSystem, ResolvesLinksAlongThePath) {
  const TemporaryFolder folder;
  const std::string root = GFileSystem::OSExpandPath(folder.Path());
  folder.MakeFolder("real/deep");
  ASSERT_EQ(symlink("real", folder.Path("relative").c_str()), 0);
  ASSERT_EQ(symlink(folder.Path("real/deep").c_str(), folder.Path("absolute").c_str()), 0);
  ASSERT_EQ(symlink("../../relative/deep", folder.Path("real/deep/back").c_str()), 0);
  ASSERT_EQ(symlink("gone", folder.Path("dangling").c_str()), 0);
  ASSERT_EQ(symlink("loop", folder.Path("loop").c_str()), 0);
  const struct {
    const char* path;
    std::string expanded;
  } kCases[] = {
      {"relative/x", root + "/real/x"},
      {"absolute/..", root + "/real"},
      {"absolute/back", root + "/real/deep"},
      {"dangling", root + "/gone"},
      {"loop", ""},
      {"loop/x", ""},
  };
  for (const auto& [path, expanded] : kCases) {
    EXPECT_EQ(GFileSystem::OSExpandPath(folder.Path(path)), expanded) << path;
  }
  GFileSystemSpec spec("/tmp");
  EXPECT_EQ(spec.SetFullPath(folder.Path("loop")), CoreErrorCodes::kInvalidParam);
  EXPECT_EQ(spec.GetFullPath(), "/tmp");
  EXPECT_TRUE(GFileSystemSpec(folder.Path("loop")).IsEmpty());
}

TEST(GFileSystem, APathOfManyMegabytesIsNoPath) {
  std::string path;
  for (int i = 0; i < 1 << 21; ++i) path += "/a";
  EXPECT_EQ(GFileSystem::OSExpandPath(path), "");
  EXPECT_TRUE(GFileSystemSpec(path).IsEmpty());
}

TEST(GFileSystem, KeepsANameThatIsNotUtf8WhenItExists) {
  const TemporaryFolder folder;
  const std::string path = folder.Write("caf\xE9", "x");
  const std::string root = GFileSystem::OSExpandPath(folder.Path());
  EXPECT_EQ(GFileSystem::OSExpandPath(path), root + "/caf\xE9");
  EXPECT_EQ(GFileSystem::OSExpandPath(folder.Path("th\xE9")), root + "/th\xC3\xA9");
}
