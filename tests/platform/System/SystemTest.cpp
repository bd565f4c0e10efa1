#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>

#include "System/FileEvents.h"
#include "System/StandardFolders.h"
#include "support/ScopedEnvironment.h"
#include "support/TemporaryFolder.h"

namespace {

namespace StandardFolders = platform::StandardFolders;
using platform::FileEvent;

TEST(StandardFolders, FollowTheVariablesThatAreAbsolute) {
  const ScopedEnvironment home("HOME", "/home/ada/");
  const ScopedEnvironment config("XDG_CONFIG_HOME", "/etc/ada/");
  const ScopedEnvironment data("XDG_DATA_HOME", "relative");
  const ScopedEnvironment cache("XDG_CACHE_HOME", "");
  EXPECT_EQ(StandardFolders::ConfigHome(), "/etc/ada");
  EXPECT_EQ(StandardFolders::DataHome(), "/home/ada/.local/share");
  EXPECT_EQ(StandardFolders::CacheHome(), "/home/ada/.cache");
  const ScopedEnvironment noHome("HOME", std::nullopt);
  EXPECT_EQ(StandardFolders::Home().front(), '/');
}

TEST(StandardFolders, TheRuntimeFolderFitsASocketPath) {
  const ScopedEnvironment runtime("XDG_RUNTIME_DIR", "/run/user/1");
  EXPECT_EQ(StandardFolders::RuntimeFolder("app", 20), "/run/user/1/app");
  const auto shortFolder = [](const std::string& value) {
    const ScopedEnvironment changed("XDG_RUNTIME_DIR", value);
    return StandardFolders::RuntimeFolder("app", 20);
  };
  const std::string one = shortFolder("/" + std::string(90, 'a'));
  EXPECT_TRUE(one.starts_with("/tmp/app-" + std::to_string(getuid()) + "-")) << one;
  EXPECT_NE(one, shortFolder("/" + std::string(90, 'b')));
  EXPECT_EQ(shortFolder(""), shortFolder("relative"));
}

TEST(StandardFolders, APrivateFolderIsOursAlone) {
  const TemporaryFolder folder;
  EXPECT_EQ(StandardFolders::MakePrivateFolder(folder.Path("a/b")), 0);
  EXPECT_EQ(StandardFolders::MakePrivateFolder(folder.Path("a/b")), 0);
  std::filesystem::create_symlink(folder.Path("a/b"), folder.Path("link"));
  EXPECT_EQ(StandardFolders::MakePrivateFolder(folder.Path("link")), EPERM);
  chmod(folder.Path("a/b").c_str(), 0755);
  EXPECT_EQ(StandardFolders::MakePrivateFolder(folder.Path("a/b")), EPERM);
  folder.Write("file", "");
  EXPECT_EQ(StandardFolders::MakePrivateFolder(folder.Path("file")), EPERM);
  EXPECT_EQ(StandardFolders::MakePrivateFolder(folder.Path("file/below")), ENOTDIR);
}

TEST(FileEvents, TellWhatHappensInAFolder) {
  const TemporaryFolder folder;
  const auto events = platform::FileEvents::Create();
  ASSERT_NE(events, nullptr);
  EXPECT_EQ(events->Watch(folder.Path("absent")), ENOENT);
  const std::string watched = folder.MakeFolder("watched");
  ASSERT_EQ(events->Watch(watched), 0);
  EXPECT_TRUE(events->Wait(std::chrono::milliseconds(0)).empty());
  folder.Write("watched/file", "x");
  std::filesystem::rename(folder.Path("watched/file"), folder.Path("moved"));
  std::filesystem::remove(watched);
  std::vector<std::pair<FileEvent::Kind, std::string>> seen;
  for (const FileEvent& event : events->Wait(std::chrono::seconds(10)))
    seen.emplace_back(event.kind, event.path);
  const std::vector<std::pair<FileEvent::Kind, std::string>> expected = {
      {FileEvent::Kind::kAppeared, watched + "/file"},
      {FileEvent::Kind::kChanged, watched + "/file"},
      {FileEvent::Kind::kDisappeared, watched + "/file"},
      {FileEvent::Kind::kDisappeared, watched}};
  EXPECT_EQ(seen, expected);
}

}  // namespace
