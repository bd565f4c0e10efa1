#include <gtest/gtest.h>

#include <cerrno>

#include "GFileSystem.h"
#include "Utilities/AgentLauncher.h"
#include "Utilities/DebugUtils.h"
#include "support/FakeSystem.h"
#include "support/ScopedEnvironment.h"
#include "support/ScopedReplacement.h"
#include "support/TemporaryFolder.h"

namespace {

// Shows what it starts only after some looks at the list.
class SlowProcesses : public FakeProcesses {
 public:
  std::vector<platform::RunningProcess> ListSession() override {
    ++looks;
    return looks > looksUntilSeen ? running : std::vector<platform::RunningProcess>();
  }

  int looks = 0;
  int looksUntilSeen = 0;
};

class AgentLauncherTest : public testing::Test {
 protected:
  AgentLauncherTest()
      : root(GFileSystem::OSExpandPath(folder.Path())),
        systemRoot("PLATFORM_SYSTEM_ROOT", root),
        dataHome("XDG_DATA_HOME", root + "/data") {
    folder.Write("bin/Kiln", "");
    DebugUtils::SetTraceSink(&AgentLauncherTest::Collect, this);
  }
  ~AgentLauncherTest() override { DebugUtils::SetTraceSink(nullptr, nullptr); }

  void WriteLaunchInfo(const std::string& domain, const std::string& text) const {
    folder.Write(domain + "/Talworth/com.talworth.Kiln-LaunchInfo.conf", text);
  }
  bool WasTraced(const std::string& text) const { return trace.find(text) != trace.npos; }

  static constexpr const char* kLocal = "usr/local/share";
  static constexpr const char* kUser = "data";
  TemporaryFolder folder;
  std::string root;
  ScopedEnvironment systemRoot;
  ScopedEnvironment dataHome;
  SlowProcesses processes;
  FakeClock clock;
  ScopedReplacement<platform::Processes> replacedProcesses{processes};
  ScopedReplacement<platform::Clock> replacedClock{clock};
  std::string trace;

 private:
  static void Collect(int, const char* text, void* context) {
    static_cast<AgentLauncherTest*>(context)->trace += std::string(text) + "\n";
  }
};

}  // namespace

TEST_F(AgentLauncherTest, FindsAProcessByItsExactName) {
  processes.running = {{10, "/opt/a/Kiln2"}, {11, "/opt/b/kiln"}, {12, "/opt/c/Kiln"}, {13, "/opt/d/Kiln"}};
  std::string path = "untouched";
  EXPECT_EQ(GetPathToRunningProcessExe("Kilns", path), -1);
  EXPECT_EQ(path, "untouched");
  EXPECT_EQ(GetPathToRunningProcessExe("Kiln", path), 0);
  EXPECT_EQ(path, "/opt/c/");
}

TEST_F(AgentLauncherTest, StartsWhatTheLaunchInformationNames) {
  WriteLaunchInfo(kUser, "kiln.path = /nowhere/Kiln\n");
  WriteLaunchInfo(kLocal, "Kiln.Path = " + root + "/bin/Kiln # installed\nkiln.args = --from plugin\n");
  processes.looksUntilSeen = 3;
  std::string path;
  EXPECT_EQ(FindAndLaunchKiln(&path), 0);
  EXPECT_EQ(path, root + "/bin/");
  ASSERT_EQ(processes.launched.size(), 1u);
  EXPECT_EQ(processes.launched[0].executable, root + "/bin/Kiln");
  EXPECT_EQ(processes.launched[0].arguments, std::vector<std::string>{"--from plugin"});
  EXPECT_EQ(processes.looks, 4);
  EXPECT_EQ(clock.slept, std::chrono::milliseconds(1000));
  EXPECT_TRUE(WasTraced("Will attempt to open '" + root + "/usr/local/share/Talworth/"));
}

TEST_F(AgentLauncherTest, GivesUpAfterFiveSeconds) {
  WriteLaunchInfo(kLocal, "kiln.path=" + root + "/bin/Kiln");
  processes.looksUntilSeen = 1000;
  std::string path;
  EXPECT_EQ(FindAndLaunchKiln(&path), -1);
  EXPECT_EQ(processes.looks, 20);
  EXPECT_EQ(clock.slept, std::chrono::seconds(5));
  EXPECT_EQ(path, root + "/bin/");
  EXPECT_TRUE(WasTraced("Could not launch Kiln"));
}

TEST_F(AgentLauncherTest, StartsNothingWithoutAUsableFile) {
  const struct {
    const char* name;
    std::string text;
  } kCases[] = {
      {"no path", "kiln.args = -x\n"},
      {"an empty path", "kiln.path =\n"},
      {"a path to nothing", "kiln.path = " + root + "/bin/Oven\n"},
      {"no text", ""},
  };
  EXPECT_EQ(FindAndLaunchKiln(nullptr), -1);
  EXPECT_TRUE(WasTraced("Could not find Kiln-LaunchInfo.conf\nCould not launch Kiln"));
  for (const auto& [name, text] : kCases) {
    WriteLaunchInfo(kLocal, text);
    EXPECT_EQ(FindAndLaunchKiln(nullptr), -1) << name;
  }
  WriteLaunchInfo(kLocal, "kiln.path=" + root + "/bin/Kiln");
  processes.launchError = EACCES;
  EXPECT_EQ(FindAndLaunchKiln(nullptr), -1);
  EXPECT_TRUE(processes.launched.empty());
  EXPECT_EQ(clock.sleeps, 0);
}

TEST_F(AgentLauncherTest, ReadsAFieldOfABundleWithinItsRoom) {
  folder.Write("My.bundle/Contents/Info.plist",
               "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<plist version=\"1.0\"><dict>"
               "<key>CFBundleShortVersionString</key><string>15.1</string>"
               "<key>Number</key><integer>1</integer></dict></plist>");
  const std::string bundle = folder.Path("My.bundle");
  char value[8] = "before";
  EXPECT_NE(ReadVersionResource(bundle.c_str(), 5, value), 0);
  EXPECT_STREQ(value, "15.1");
  EXPECT_EQ(ReadVersionResource(bundle.c_str(), 4, value), 0);
  EXPECT_STREQ(value, "");
  EXPECT_EQ(ReadFieldFromVersionResource(bundle.c_str(), "Number", sizeof value, value), 0);
  EXPECT_EQ(ReadFieldFromVersionResource(bundle.c_str(), "None", sizeof value, value), 0);
  EXPECT_EQ(ReadVersionResource(folder.Path("none").c_str(), sizeof value, value), 0);
  EXPECT_EQ(ReadVersionResource(nullptr, sizeof value, value), 0);
  EXPECT_EQ(ReadVersionResource(bundle.c_str(), 0, nullptr), 0);
}
