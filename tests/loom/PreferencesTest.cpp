#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <vector>

#include "Preferences.h"
#include "support/FakeSystem.h"
#include "support/ScopedReplacement.h"
#include "support/TemporaryFolder.h"

namespace {

constexpr const char* kHead =
    "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
    "<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" "
    "\"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n<plist version=\"1.0\">\n";

std::string List(const std::string& body) {
  return kHead + body + "\n</plist>\n";
}

class PreferencesTest : public testing::Test {
 protected:
  Preferences Make(const std::string& overrides = "") {
    return {folder.Path("config/hornbeam/Preferences.plist"), overrides,
            [this](const std::string& sentence) { reports.push_back(sentence); }};
  }
  std::string Written() const { return folder.Read("config/hornbeam/Preferences.plist"); }
  void Write(const std::string& bytes) const { folder.Write("config/hornbeam/Preferences.plist", bytes); }
  std::vector<std::string> FilesInFolder() const {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(folder.Path("config/hornbeam"))) {
      const std::string name = entry.path().filename().string();
      if (!name.ends_with(".lock")) names.push_back(name);
    }
    return names;
  }
  static bool BoolOf(Preferences& preferences, const char* key) {
    const auto value = preferences.Get(key);
    return value && value->AsBool();
  }
  static long LongOf(Preferences& preferences, const char* key) {
    const auto value = preferences.Get(key);
    return value ? value->AsLong() : 0;
  }

  TemporaryFolder folder;
  std::vector<std::string> reports;
};

}  // namespace

TEST_F(PreferencesTest, OutliveTheProcessInAPropertyList) {
  {
    Preferences preferences = Make();
    EXPECT_FALSE(preferences.Exist());
    preferences.Set("EnablePlugin", PreferenceValue(true));
    preferences.Set("CS5PanelWidth", PreferenceValue(260L));
    preferences.Set("Name", PreferenceValue(std::string("<é>")));
    preferences.Set("Gone", PreferenceValue(1L));
    preferences.Set("Gone", std::nullopt);
  }
  EXPECT_EQ(Written(), List("<dict>\n\t<key>CS5PanelWidth</key>\n\t<integer>260</integer>\n"
                            "\t<key>EnablePlugin</key>\n\t<true/>\n"
                            "\t<key>Name</key>\n\t<string>&lt;é&gt;</string>\n</dict>"));
  EXPECT_EQ(FilesInFolder(), std::vector<std::string>{"Preferences.plist"});
  Preferences preferences = Make();
  EXPECT_TRUE(preferences.Exist());
  EXPECT_TRUE(BoolOf(preferences, "EnablePlugin"));
  EXPECT_EQ(LongOf(preferences, "CS5PanelWidth"), 260);
  EXPECT_EQ(preferences.Get("Name")->AsString(), "<é>");
  EXPECT_FALSE(preferences.Get("Gone"));
  EXPECT_TRUE(reports.empty());
}

TEST_F(PreferencesTest, KeepWhatTheyDoNotKnow) {
  Write(List("<dict><key>Later</key><array><real>1.5</real></array><key>A</key><string>yes</string></dict>"));
  Preferences preferences = Make();
  EXPECT_TRUE(BoolOf(preferences, "A"));
  EXPECT_FALSE(preferences.Get("Later"));
  preferences.Set("A", PreferenceValue(false));
  EXPECT_NE(Written().find("<key>Later</key>\n\t<array>\n\t\t<real>1.5</real>"), std::string::npos);
}

TEST_F(PreferencesTest, OverridesWinAndAreNeverStored) {
  Preferences preferences = Make("CloseFontsOnDocClose=1; CurrentWorkgroup = -2;;nonsense;=1");
  EXPECT_EQ(reports.size(), 2u);
  EXPECT_FALSE(preferences.Exist());
  EXPECT_TRUE(BoolOf(preferences, "CloseFontsOnDocClose"));
  EXPECT_EQ(LongOf(preferences, "CurrentWorkgroup"), -2);
  preferences.Set("CloseFontsOnDocClose", PreferenceValue(false));
  EXPECT_TRUE(BoolOf(preferences, "CloseFontsOnDocClose"));
  Preferences next = Make();
  EXPECT_FALSE(BoolOf(next, "CloseFontsOnDocClose"));
  EXPECT_TRUE(next.Get("CloseFontsOnDocClose").has_value());
  EXPECT_FALSE(next.Get("CurrentWorkgroup"));
}

TEST_F(PreferencesTest, LoseNoChangeOfTwoProcesses) {
  constexpr int kChanges = 50;
  const pid_t child = fork();
  Preferences preferences = Make();
  for (long i = 0; i < kChanges; ++i) {
    preferences.Set((child == 0 ? "Child" : "Parent") + std::to_string(i), PreferenceValue(i));
  }
  if (child == 0) _exit(reports.empty() ? 0 : 1);
  int status = -1;
  waitpid(child, &status, 0);
  EXPECT_EQ(status, 0);
  for (int i = 0; i < kChanges; ++i) {
    EXPECT_TRUE(preferences.Get("Child" + std::to_string(i))) << i;
    EXPECT_TRUE(preferences.Get("Parent" + std::to_string(i))) << i;
  }
}

TEST_F(PreferencesTest, KeepADamagedFileAsideAndSayIt) {
  const struct {
    const char* name;
    std::string bytes;
  } kCases[] = {
      {"cut short", List("<dict><key>A</key><true/>").substr(0, 200)},
      {"no dictionary", List("<array/>")},
      {"empty", ""},
      {"not XML", "bplist00\x01\x02"},
      {"an entity bomb",
       "<?xml version=\"1.0\"?><!DOCTYPE plist [<!ENTITY a \"aaaa\"><!ENTITY b \"&a;&a;\">]>"
       "<plist><dict><key>A</key><string>&b;</string></dict></plist>"},
      {"far too large", List("<dict/>") + std::string(5 << 20, ' ')},
  };
  std::size_t kept = 0;
  for (const auto& [name, bytes] : kCases) {
    for (const bool isWrittenTo : {false, true}) {
      reports.clear();
      Write(bytes);
      Preferences preferences = Make();
      if (isWrittenTo) preferences.Set("A", PreferenceValue(1L));
      EXPECT_EQ(LongOf(preferences, "A"), isWrittenTo ? 1 : 0) << name;
      EXPECT_EQ(preferences.Exist(), isWrittenTo) << name;
      ASSERT_EQ(reports.size(), 1u) << name;
      const std::size_t start = reports[0].find("kept as '") + 9;
      const std::string aside = reports[0].substr(start, reports[0].find('\'', start) - start);
      EXPECT_EQ(folder.Read(std::filesystem::relative(aside, folder.Path()).string()), bytes) << name;
      EXPECT_EQ(FilesInFolder().size(), ++kept + (isWrittenTo ? 1 : 0)) << name;
    }
  }
}

TEST_F(PreferencesTest, HoldForThisProcessWhenTheyCannotBeStored) {
  folder.Write("config/hornbeam", "a file where the folder should be");
  Preferences preferences = Make();
  preferences.Set("A", PreferenceValue(1L));
  EXPECT_EQ(LongOf(preferences, "A"), 1);
  EXPECT_FALSE(preferences.Exist());
  EXPECT_FALSE(reports.empty());
  EXPECT_EQ(folder.Read("config/hornbeam"), "a file where the folder should be");
}

TEST_F(PreferencesTest, DoNotWaitForAPipeOrAStoppedProcess) {
  folder.MakeFolder("config/hornbeam");
  ASSERT_EQ(mkfifo(folder.Path("config/hornbeam/Preferences.plist").c_str(), 0600), 0);
  Preferences preferences = Make();
  EXPECT_FALSE(preferences.Get("A"));
  preferences.Set("A", PreferenceValue(1L));
  EXPECT_EQ(LongOf(preferences, "A"), 1);
  ASSERT_EQ(unlink(folder.Path("config/hornbeam/Preferences.plist").c_str()), 0);

  const int lock = open(folder.Path("config/hornbeam/Preferences.plist.lock").c_str(), O_RDWR);
  ASSERT_EQ(flock(lock, LOCK_EX), 0);
  FakeClock clock;
  const ScopedReplacement<platform::Clock> replaced(clock);
  preferences.Set("B", PreferenceValue(2L));
  EXPECT_EQ(LongOf(preferences, "B"), 2);
  EXPECT_GT(clock.sleeps, 0);
  close(lock);
  EXPECT_EQ(Written(), "");
}

TEST_F(PreferencesTest, FollowALinkToWhereTheFileLies) {
  const std::string real = folder.Write("dotfiles/prefs", List("<dict/>"));
  folder.MakeFolder("config/hornbeam");
  std::filesystem::create_symlink(real, folder.Path("config/hornbeam/Preferences.plist"));
  Preferences preferences = Make();
  preferences.Set("A", PreferenceValue(true));
  EXPECT_TRUE(std::filesystem::is_symlink(folder.Path("config/hornbeam/Preferences.plist")));
  EXPECT_NE(folder.Read("dotfiles/prefs").find("<key>A</key>"), std::string::npos);
}
