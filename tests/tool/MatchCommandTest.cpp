#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/FontBuilder.h"
#include "support/PrivateHome.h"
#include "tool/RunHornbeam.h"

namespace {

using testing::HasSubstr;

/// `hornbeam match` on a library with several fonts of one name.
class MatchCommandTest : public testing::Test {
 protected:
  MatchCommandTest() { m_home.WriteLaunchInformation(kKiln); }

  void AddFonts() {
    FontBuilder old;
    FontBuilder recent;
    recent.version = "Version 2.000";
    recent.manufacturer = "Acme Type";
    const TemporaryFolder& folder = m_home.Folder();
    const std::vector<std::string> add = {"library", "add", folder.Write("old.ttf", old.TrueType()),
                                          folder.Write("recent.ttf", recent.TrueType()),
                                          folder.Write("old.otf", old.OpenType())};
    ASSERT_EQ(RunHornbeam(add).exitCode, 0);
  }

  PrivateHome m_home;
};

TEST_F(MatchCommandTest, ShowsTheBestAndWhyItIs) {
  AddFonts();
  struct Case {
    std::vector<std::string> arguments;
    const char* found;
    const char* decidedBy;
    const char* best;
  };
  const Case cases[] = {
      {{"Testa-Regular"}, "Testa-Regular\",\"foundAs\":\"postScriptName", "kindRanking", "OpenType"},
      {{"--kind=truetype", "Testa-Regular"},
       "Testa-Regular\",\"foundAs\":\"postScriptName",
       "version",
       "TrueType\",\"foundry\":\"Acme Type\",\"version\":\"2.000"},
      {{"--foundry=acme type", "ABCDEF+Testa-Regular"},
       "Testa-Regular\",\"foundAs\":\"postScriptName",
       "requestedFoundry",
       "TrueType\",\"foundry\":\"Acme Type"},
      {{"Testa_Oblique"}, "Testa\",\"foundAs\":\"family", "kindRanking", "OpenType"},
      {{"--family", "Testa"}, "Testa\",\"foundAs\":\"family", "kindRanking", "OpenType"},
  };
  for (const Case& row : cases) {
    std::vector<std::string> arguments = {"match", "--json"};
    arguments.insert(arguments.end(), row.arguments.begin(), row.arguments.end());
    const HornbeamResult result = RunHornbeam(arguments);
    EXPECT_EQ(result.exitCode, 0) << result.errors;
    EXPECT_THAT(result.output, HasSubstr(std::string("\"foundName\":\"") + row.found + "\""));
    EXPECT_THAT(result.output, HasSubstr(std::string("\"decidedBy\":\"") + row.decidedBy + "\""));
    EXPECT_THAT(result.output,
                testing::ContainsRegex(std::string("\"candidates\":\\[\\{\"databaseID\":[0-9]+,"
                                                   "\"postScriptName\":\"Testa-Regular\","
                                                   "\"kind\":\"") +
                                       row.best));
  }
}

TEST_F(MatchCommandTest, ANameThatNobodyHasIsNamedAndTheOthersAreShown) {
  AddFonts();
  const HornbeamResult result = RunHornbeam({"match", "Quillmere", "Testa-Regular"});
  EXPECT_EQ(result.exitCode, 1);
  EXPECT_EQ(result.errors, "hornbeam: Quillmere: not found\n");
  EXPECT_THAT(result.output, testing::StartsWith("Testa-Regular: 3 by the PostScript name Testa-Regular; the "
                                                 "best is of the better kind\n"));
  EXPECT_THAT(result.output, HasSubstr(", OpenType, TEST, 1.000, Font Library\n"));
  EXPECT_THAT(result.output, HasSubstr("  GlyphMark of the best:\n      PostScriptName: Testa-Regular\n      "
                                       "FontKind: OpenType\n"));
  EXPECT_EQ(RunHornbeam({"match"}).exitCode, 2);
}

}  // namespace
