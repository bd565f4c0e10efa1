#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/TemporaryFolder.h"
#include "tool/RunHornbeam.h"

namespace {

using testing::HasSubstr;
using testing::IsEmpty;

/// `hornbeam fonts` and `hornbeam eps-write`, which need neither Kiln nor a home.
class FontsCommandTest : public testing::Test {
 protected:
  // Long enough to be taken for an EPS.
  std::string WriteEps(const std::string& name, const std::string& comments) const {
    return m_folder.Write(name, "%!PS-Adobe-3.0 EPSF-3.0\n" + comments + "%%EndComments\n" +
                                    std::string(1000, ' ') + "\nshowpage\n");
  }

  TemporaryFolder m_folder;
};

TEST_F(FontsCommandTest, ListsTheFontsOfAFileAndWhereTheyStood) {
  const std::string path = WriteEps(
      "a.eps", "%%DocumentFonts: Foo-Bold\n%%DocumentFontSpecs: <FONTSPEC NAME=\"Bar\" VERSION=\"1.0\"/>\n");
  const HornbeamResult plain = RunHornbeam({"fonts", path});
  EXPECT_EQ(plain.exitCode, 0);
  EXPECT_EQ(plain.output, path + ": EPS\n  Foo-Bold  (comment)\n  Bar  (specification)\n");
  const HornbeamResult full = RunHornbeam({"fonts", "--json", "--glyphmark", path});
  EXPECT_EQ(full.output, "{\"file\":\"" + path +
                             "\",\"kind\":\"EPS\",\"fonts\":[{\"postScriptName\":\"Foo-Bold\",\"source\":"
                             "\"comment\"},{\"postScriptName\":\"Bar\",\"source\":\"specification\","
                             "\"Version\":\"1.0\"}],\"notes\":[]}\n");
}

TEST_F(FontsCommandTest, EndsAsGrepDoes) {
  const std::string with = WriteEps("with.eps", "%%DocumentFonts: Foo\n");
  const std::string without = WriteEps("without.eps", "");
  const std::string unknown = m_folder.Write("short.eps", "%!PS");
  EXPECT_EQ(RunHornbeam({"fonts", without, with}).exitCode, 0);
  EXPECT_EQ(RunHornbeam({"fonts", without, unknown}).exitCode, 1);
  const HornbeamResult trouble = RunHornbeam({"fonts", "--json", with, m_folder.Path("none.eps"), unknown});
  EXPECT_EQ(trouble.exitCode, 2);
  EXPECT_THAT(trouble.output,
              HasSubstr("none.eps\",\"kind\":\"unknown\",\"fonts\":[],\"notes\":[\"can't be read\"]}"));
  EXPECT_THAT(trouble.output, HasSubstr("short.eps\",\"kind\":\"unknown\",\"fonts\":[],\"notes\":[]}"));
  EXPECT_THAT(trouble.errors, HasSubstr("none.eps: No such file"));
  EXPECT_EQ(RunHornbeam({"fonts", m_folder.Path()}).exitCode, 2);
  EXPECT_EQ(RunHornbeam({"fonts"}).exitCode, 2);
}

TEST_F(FontsCommandTest, KeepsTheOrderOfManyFilesBelowAFolder) {
  std::string expected;
  for (int i = 100; i < 300; ++i) {
    const std::string name = "Font" + std::to_string(i);
    expected += WriteEps("art/" + std::to_string(i) + ".EPS", "%%DocumentFonts: " + name + "\n");
    expected.append(": EPS\n  ").append(name).append("  (comment)\n");
  }
  m_folder.Write("art/notes.txt", "%%DocumentFonts: No");
  EXPECT_EQ(RunHornbeam({"fonts", "-r", m_folder.Path("art")}).output, expected);
}

TEST_F(FontsCommandTest, WritesRecordsIntoAnEpsAndReadsThemBack) {
  const std::string path = WriteEps("a.eps", "%%DocumentFonts: Foo-Bold\n");
  const std::string records =
      m_folder.Write("records.plist",
                     "<plist version=\"1.0\"><array><dict><key>PostScriptName</key><string>Foo-Bold</string>"
                     "<key>Foundry</key><string>Acme</string></dict></array></plist>");
  const HornbeamResult written = RunHornbeam({"eps-write", path, "--from", records});
  EXPECT_EQ(written.exitCode, 0);
  EXPECT_THAT(written.errors, IsEmpty());
  EXPECT_THAT(
      m_folder.Read("a.eps"),
      HasSubstr("%%DocumentFontSpecs: <FONTSPEC NAME=\"Foo-Bold\" FOUNDRY=\"Acme\"/>\r%%EndComments"));
  EXPECT_THAT(RunHornbeam({"fonts", path}).output, HasSubstr("Foo-Bold  (specification)"));
}

TEST_F(FontsCommandTest, SaysWhatCannotBeWritten) {
  const std::string path = WriteEps("a.eps", "");
  const std::string list = "<plist version=\"1.0\"><array><dict><key>PostScriptName</key><string>";
  const std::string blank = m_folder.Write("blank.plist", list + "Foo Bar</string></dict></array></plist>");
  EXPECT_THAT(RunHornbeam({"eps-write", path, "--from", blank}).errors,
              HasSubstr("Foo Bar: isn't found in the file"));
  const std::string quote = m_folder.Write(
      "quote.plist", list + "Foo</string><key>Version</key><string>\"1\"</string></dict></array></plist>");
  EXPECT_THAT(RunHornbeam({"eps-write", path, "--from", quote}).errors,
              HasSubstr("Foo: VERSION can't be written"));
  const std::string open = m_folder.Write("open.eps", "%!PS-Adobe-3.0 EPSF-3.0\n" + std::string(1000, 'x'));
  const HornbeamResult refused = RunHornbeam({"eps-write", open, "--from", blank});
  EXPECT_EQ(refused.exitCode, 1);
  EXPECT_THAT(refused.errors, HasSubstr("open.eps: no %%EndComments"));
  EXPECT_EQ(RunHornbeam({"eps-write", path, "--from", path}).exitCode, 1);
  EXPECT_EQ(RunHornbeam({"eps-write", path}).exitCode, 2);
}

}  // namespace
