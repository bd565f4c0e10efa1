#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <sstream>

#include "support/FontBuilder.h"
#include "support/PrivateHome.h"
#include "tool/RunHornbeam.h"

namespace {

using testing::HasSubstr;

/// A command line, its words parted by blanks, and what is to come of it.
struct Step {
  std::string command;
  int exitCode;
  std::string says;  ///< on standard output or standard error
};

HornbeamResult RunWords(const std::string& command) {
  std::istringstream words(command);
  return RunHornbeam({std::istream_iterator<std::string>(words), {}});
}

void Go(const std::vector<Step>& steps) {
  for (const Step& step : steps) {
    const HornbeamResult result = RunWords(step.command);
    EXPECT_EQ(result.exitCode, step.exitCode) << step.command << "\n" << result.errors;
    EXPECT_THAT(result.output + result.errors, HasSubstr(step.says)) << step.command;
  }
}

/// Until a command says a text.
void AwaitThat(const std::string& command, const std::string& text) {
  std::string output;
  for (int i = 0; i < 500 && output.find(text) == std::string::npos; ++i) {
    output = RunWords(command).output;
  }
  EXPECT_THAT(output, HasSubstr(text)) << command;
}

/// The further commands of `hornbeam library`, with fonts Aa, Bb and Cc of IDs 1 to 3 in it.
class LibraryCommandsTest : public testing::Test {
 protected:
  LibraryCommandsTest() {
    m_home.WriteLaunchInformation(kKiln);
    for (const char* name : {"Aa", "Bb", "Cc"}) {
      EXPECT_EQ(RunHornbeam({"library", "add", WriteFont(std::string(name) + ".ttf", name)}).exitCode, 0);
    }
  }

  std::string WriteFont(const std::string& file, const char* postScriptName) const {
    FontBuilder font;
    font.postScriptName = postScriptName;
    return m_home.Folder().Write(file, font.TrueType());
  }

  static std::string FcList() {
    ProgramRun run("/usr/bin/fc-list", {":", "postscriptname"});
    run.Wait();
    return run.Output();
  }

  std::string Path(const std::string& name) const { return m_home.Folder().Path(name); }

  PrivateHome m_home;
};

TEST_F(LibraryCommandsTest, ActivationByHandLastsUntilItIsTakenBack) {
  Go({{"library activate Aa 2 Zz", 1, "Zz: no such font"},
      {"library activate Cc", 0, "Activated 1 font until"}});
  EXPECT_THAT(FcList(), HasSubstr("=Aa\n"));
  ASSERT_EQ(PrivateHome::SignalPrograms("Kiln", SIGKILL), 1);
  Go({{"library list --json", 0, "\"postScriptName\":\"Bb\""},
      {"library deactivate Aa Bb 3", 0, "Deactivated 3 fonts"}});
  EXPECT_THAT(FcList(), testing::Not(HasSubstr("=Aa\n")));
  Go({{"library refuse 1 Aa", 0, "Marked 1 font of Font Library"},
      {"library activate Aa Bb", 1, "Aa (1): a library marks it"},
      {"library list", 0, "     2  active    Bb"},
      {"library allow 1 Aa", 0, "Took the mark from 1 font"},
      {"library activate Aa", 0, "Activated 1 font until"},
      {"library refuse all Aa", 1, "one library"},
      {"library activate", 2, "FONT is required"}});
}

TEST_F(LibraryCommandsTest, ExportNumbersWhatIsThereAlready) {
  Go({{"library export " + Path("out") + " Aa Bb", 0, "Copied 2 fonts"},
      {"library export " + Path("out") + " 1 Zz", 1, "Copied 1 font "},
      {"library export " + Path("Aa.ttf/in") + " Aa", 1, "no font was copied: "}});
  for (const char* file : {"out/Aa.ttf", "out/Bb.ttf", "out/Aa 2.ttf"}) {
    EXPECT_TRUE(std::filesystem::exists(Path(file))) << file;
  }
}

TEST_F(LibraryCommandsTest, LibrariesHoldFontsAndOneIsSelected) {
  Go({{"library workgroups make Clients", 0, "its ID is 3"},
      {"library workgroups make Clients", 1, "there is one of that name"},
      {"library add --to Clients " + WriteFont("Dd.ttf", "Dd"), 0, "Added 1 font "},
      {"library workgroups put Clients Aa 2", 0, "Put 2 fonts into Clients"},
      {"library workgroups rename 3 Customers", 0, "Clients is now named Customers"},
      {"library workgroups rename 1 Mine", 1, "isn't yours to change"},
      {"library workgroups", 0, "*  all  All Libraries"},
      {"library select Customers", 0, "looked for in Customers"},
      {"library workgroups --json", 0,
       "{\"libraryID\":3,\"name\":\"Customers\",\"type\":3,\"fonts\":3,\"selected\":true}"},
      {"match --json Cc", 1, "\"found\":false"},
      {"match --json Aa", 0, "\"library\":\"Customers\""},
      {"library select Clients", 1, "no such library"},
      {"library workgroups take Customers Bb Cc", 1, "Cc: no such font"},
      {"library activate Dd", 0, ""},
      {"library workgroups take 3 Dd", 1, "Dd (4): stays"},
      {"library workgroups delete Customers", 0, "Customers was deleted"},
      {"library workgroups", 0, "*  all  All Libraries"},
      {"library select all", 0, "All Libraries"},
      {"library list", 0, "Dd"}});
}

TEST_F(LibraryCommandsTest, SetsAreMadeListedAndDeleted) {
  Go({{"library sets", 0, ""},
      {"library sets make Brochure --library 1 Aa 3", 0, "2 fonts; its ID is 1"},
      {"library sets make Brochure --library 1 Zz Aa", 1, "Zz: no such font"},
      {"library sets add 1 Bb", 0, "Added 1 font "},
      {"library sets", 0, "     1  Brochure, in Font Library, 3 fonts\n        Aa\n        Bb\n        Cc\n"},
      {"library sets --json", 0, "\"library\":\"Font Library\",\"fontIDs\":[1,2,3]}"},
      {"library sets add 7 Bb", 1, "no such set"},
      {"library sets delete 1", 0, "deleted"},
      {"library sets delete 1", 1, "no such set"},
      {"library sets make Brochure Aa", 2, "--library is required"}});
}

TEST_F(LibraryCommandsTest, AServerIsThereWhileSomebodyIsLoggedIn) {
  const std::string server = Path("server");
  WriteFont("server/Marketing/Ee.ttf", "Ee");
  m_home.Folder().Write("server/server.conf",
                        "users = anna\nacross-workgroups =,\nworkgroup.Marketing.export =,\n");
  Go({{"status", 0, "Server: stands alone\nGoogle: off\n"},
      {"library login " + Path("nowhere") + " --user anna", 1, "holds no server.conf"},
      {"library login " + server + " --user ben", 1, "the server doesn't know the user"},
      {"library logout", 1, "nobody is logged in"},
      {"library login " + server + " --user anna", 0, "anna is logged in to " + server},
      {"library login " + server + " --user anna", 1, "library logout first"}});
  AwaitThat("library workgroups", "Marketing                        1 font");
  Go({{"status", 0, "Server: font server " + server + ", anna is logged in, online"},
      {"library select all", 1, "all libraries together"},
      {"library select Marketing", 0, "Marketing"},
      {"match --json Ee", 0, "\"library\":\"Marketing\""},
      {"library export " + Path("out") + " Ee", 1, "doesn't allow"},
      {"library refuse Marketing Ee", 1, "isn't yours"},
      {"library logout", 0, "Nobody is logged in"},
      {"status --json", 0,
       "\"standalone\":false,\"server\":\"" + server + "\",\"user\":\"anna\",\"loggedIn\":false"},
      {"match Aa", 1, "nobody is logged in"},
      {"library logout --leave", 0, "Kiln stands alone"}});
}

TEST_F(LibraryCommandsTest, GoogleFontsAreThereWhileTheyAreOn) {
  WriteFont("google/Ff.ttf", "Ff");
  Go({{"library google on", 1, "no folder was ever named"},
      {"library google on " + Path("nowhere"), 1, "no such folder"},
      {"library google on " + Path("google"), 0, "is on"}});
  AwaitThat("match --json Ff", "\"library\":\"Google Fonts\"");
  Go({{"library google off", 0, "is off"},
      {"match Ff", 1, "not found"},
      {"library google on", 0, "is on"},
      {"status", 0, "Google: on, from " + Path("google")},
      {"library google", 2, "subcommand"}});
}

TEST_F(LibraryCommandsTest, ARescanNamesFontsWhoseFilesHaveGone) {
  Go({{"library rescan", 0, "3 files checked, 0 fonts missing, 0 damaged"}});
  std::filesystem::remove_all(Path("data/kiln/vault"));
  std::filesystem::create_directory(Path("data/kiln/vault"));
  Go({{"library rescan", 1, "Bb (2): its file has gone"}, {"library list", 0, "missing   Cc"}});
}

}  // namespace
