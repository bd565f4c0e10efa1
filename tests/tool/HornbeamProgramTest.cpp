#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

#include "support/IdmlFixture.h"
#include "support/PrivateHome.h"
#include "tool/RunHornbeam.h"

namespace {

using testing::HasSubstr;
using testing::Not;

constexpr char kFontFolder[] = "/usr/share/fonts/truetype/dejavu";

/// Fonts by family, style and PostScript name, as fonts-dejavu-core has them.
struct Face {
  const char* family;
  const char* style;
  const char* postScriptName;
};
constexpr Face kSans{"DejaVu Sans", "Book", "DejaVuSans"};
constexpr Face kSansBold{"DejaVu Sans", "Bold", "DejaVuSans-Bold"};
constexpr Face kSerif{"DejaVu Serif", "Book", "DejaVuSerif"};
constexpr Face kNobodyHasIt{"Quillmere", "Display", "Quillmere-Display"};

/// The programs as a user has them: the real host, plug-in, Kiln and frameworks, in a home of its own.
class HornbeamProgramTest : public testing::Test {
 protected:
  HornbeamProgramTest() { m_home.WriteLaunchInformation(kKiln); }

  // The PostScript names that fontconfig shows to any program.
  static std::string FcList() {
    ProgramRun run("/usr/bin/fc-list", {":", "postscriptname"});
    run.Wait();
    return run.Output();
  }

  static bool IsShown(const Face& face) {
    return FcList().find(std::string(":postscriptname=") + face.postScriptName + "\n") != std::string::npos;
  }

  std::string WriteDocument(const std::string& name, const std::vector<Face>& faces) const {
    std::string fonts = "=== Resources/Fonts.xml\n";
    std::string story = "=== Stories/Story_u1.xml\n<ParagraphStyleRange>";
    for (const Face& face : faces) {
      fonts += std::string("<FontFamily Name=\"") + face.family + "\"><Font FontFamily=\"" + face.family +
               "\" FontStyleName=\"" + face.style + "\" PostScriptName=\"" + face.postScriptName +
               "\"/></FontFamily>\n";
      story += std::string("<CharacterStyleRange FontStyle=\"") + face.style +
               "\"><Properties><AppliedFont type=\"string\">" + face.family +
               "</AppliedFont></Properties><Content>text</Content></CharacterStyleRange>";
    }
    return IdmlFixture(fonts + story + "</ParagraphStyleRange>\n").Write(m_home.Folder().Path(name));
  }

  void FillLibrary() {
    const HornbeamResult added = RunHornbeam({"library", "add", kFontFolder});
    ASSERT_EQ(added.exitCode, 0) << added.errors;
  }

  PrivateHome m_home;
};

TEST_F(HornbeamProgramTest, FontsAreActiveForEveryProgramWhileTheDocumentIsOpen) {
  FillLibrary();
  const std::string document = WriteDocument("a.idml", {kSans, kSerif, kNobodyHasIt});
  EXPECT_FALSE(IsShown(kSans));
  ProgramRun run(kHornbeam, {"open", "--give-back", "--wait", document});
  ASSERT_TRUE(run.WaitForOutput("alert")) << run.Errors();
  EXPECT_TRUE(IsShown(kSans));
  EXPECT_TRUE(IsShown(kSerif));
  EXPECT_FALSE(IsShown(kSansBold)) << "a font of the same family that nobody asked for";
  EXPECT_EQ(run.Wait(), 0);
  EXPECT_THAT(run.Output(), HasSubstr("3 fonts used, 2 activated, 0 active before, 1 missing"));
  EXPECT_THAT(run.Output(), HasSubstr("2 fonts given back: DejaVuSans, DejaVuSerif"));
  EXPECT_FALSE(IsShown(kSans));
}

TEST_F(HornbeamProgramTest, JsonTellsEachDocumentOnOneLine) {
  FillLibrary();
  const std::string all = WriteDocument("all.idml", {kSerif, kSans});
  const std::string some = WriteDocument("some.idml", {kNobodyHasIt, kSans});
  const HornbeamResult result = RunHornbeam({"open", "--json", "--give-back", all, some});
  EXPECT_EQ(result.exitCode, 0) << result.errors;
  std::istringstream lines(result.output);
  std::string first, second, rest;
  std::getline(lines, first);
  std::getline(lines, second);
  EXPECT_FALSE(std::getline(lines, rest)) << rest;
  EXPECT_THAT(first,
              HasSubstr("\"document\":\"" + all + "\",\"usedFonts\":[\"DejaVuSerif\",\"DejaVuSans\"]"));
  EXPECT_THAT(first, HasSubstr("\"wasActive\":false},"));
  EXPECT_THAT(first, HasSubstr("\"problems\":[],\"alertsSuppressed\":true,\"deactivated\":[\"DejaVuSerif\"]"))
      << "the second document still needs the other font";
  EXPECT_THAT(second, HasSubstr("\"postScriptName\":\"DejaVuSans\""));
  EXPECT_THAT(second, HasSubstr("\"wasActive\":true"));
  EXPECT_THAT(second, HasSubstr("\"problems\":[\"Quillmere-Display\"],\"alertsSuppressed\":false"));
  EXPECT_THAT(second, HasSubstr("\"deactivated\":[\"DejaVuSans\"]"));
  EXPECT_FALSE(IsShown(kSans));
}

TEST_F(HornbeamProgramTest, AFontThatWasThereBeforeStays) {
  std::filesystem::copy_file(std::string(kFontFolder) + "/DejaVuSans.ttf",
                             m_home.Folder().Path("data/fonts/DejaVuSans.ttf"));
  FillLibrary();
  const HornbeamResult result =
      RunHornbeam({"open", "--json", "--give-back", WriteDocument("a.idml", {kSans, kSerif})});
  EXPECT_THAT(result.output, HasSubstr("\"deactivated\":[\"DejaVuSerif\"]"));
  EXPECT_TRUE(IsShown(kSans));
  EXPECT_FALSE(IsShown(kSerif));
}

TEST_F(HornbeamProgramTest, QuittingGivesBackWhatClosingDidNot) {
  FillLibrary();
  const std::string document = WriteDocument("a.idml", {kSans});
  const HornbeamResult closed = RunHornbeam({"open", "--json", document});
  EXPECT_THAT(closed.output, HasSubstr("\"deactivated\":[]"));
  EXPECT_FALSE(IsShown(kSans));
  const HornbeamResult kept = RunHornbeam({"open", "--json", "--keep-open", document});
  EXPECT_THAT(kept.output, HasSubstr("\"deactivated\":[]"));
  EXPECT_TRUE(IsShown(kSans));
}

TEST_F(HornbeamProgramTest, InterruptionClosesWhatIsOpen) {
  FillLibrary();
  ProgramRun run(kHornbeam, {"open", "--give-back", "--wait", WriteDocument("a.idml", {kSans})});
  ASSERT_TRUE(run.WaitForOutput("alert")) << run.Errors();
  run.Signal(SIGINT);
  EXPECT_EQ(run.Wait(), 0);
  EXPECT_THAT(run.Output(), HasSubstr("1 font given back"));
  EXPECT_FALSE(IsShown(kSans));
}

TEST_F(HornbeamProgramTest, ClosingEndsWellAfterKilnWasKilled) {
  FillLibrary();
  ProgramRun run(kHornbeam, {"open", "--give-back", "--wait", WriteDocument("a.idml", {kSans})});
  ASSERT_TRUE(run.WaitForOutput("alert")) << run.Errors();
  ASSERT_EQ(PrivateHome::SignalPrograms("Kiln", SIGKILL), 1);
  EXPECT_EQ(run.Wait(), 0) << run.Errors();
  EXPECT_THAT(run.Errors(), HasSubstr("Kiln has ended unexpectedly"));
  EXPECT_EQ(RunHornbeam({"library", "list"}).exitCode, 0) << "starts Kiln again";
  EXPECT_FALSE(IsShown(kSans));
}

TEST_F(HornbeamProgramTest, WithoutAFontManagerThePlugInIsInertAndSaysSo) {
  std::filesystem::remove_all(m_home.Folder().Path("data/Talworth"));
  const HornbeamResult result = RunHornbeam({"open", WriteDocument("a.idml", {kSans})});
  EXPECT_EQ(result.exitCode, 0);
  EXPECT_THAT(result.errors, HasSubstr("could not locate a running copy of the Kiln application"));
  EXPECT_THAT(result.output, HasSubstr("0 activated"));
  EXPECT_THAT(RunHornbeam({"status"}).output, HasSubstr("isn't running"));
  EXPECT_EQ(RunHornbeam({"library", "list"}).exitCode, 1);
}

TEST_F(HornbeamProgramTest, ABadDocumentIsNamedAndTheOthersAreOpened) {
  FillLibrary();
  const std::string bad = m_home.Folder().Write("bad.idml", "no package");
  const std::string missing = m_home.Folder().Path("missing.idml");
  const HornbeamResult result =
      RunHornbeam({"open", "--json", bad, missing, WriteDocument("good.idml", {kSans})});
  EXPECT_EQ(result.exitCode, 1);
  EXPECT_THAT(result.errors, HasSubstr("hornbeam: " + bad + ": "));
  EXPECT_THAT(result.errors, HasSubstr("hornbeam: " + missing + ": "));
  EXPECT_THAT(result.output, HasSubstr("good.idml"));
  EXPECT_THAT(result.output, Not(HasSubstr("bad.idml")));
}

TEST_F(HornbeamProgramTest, TwoImportsAtOnceBothLandAndADamagedFontIsNamed) {
  const std::string damaged = m_home.Folder().Write("damaged.ttf", "no font");
  ProgramRun first(kHornbeam, {"library", "add", std::string(kFontFolder) + "/DejaVuSans.ttf", damaged});
  ProgramRun second(kHornbeam, {"library", "add", std::string(kFontFolder) + "/DejaVuSerif.ttf"});
  EXPECT_EQ(first.Wait(), 1);
  EXPECT_EQ(second.Wait(), 0) << second.Errors();
  EXPECT_THAT(first.Errors(), HasSubstr("hornbeam: " + damaged + ": "));
  EXPECT_THAT(first.Output(), HasSubstr("Added 1 font from 1 file, 1 failed."));
  const std::string list = RunHornbeam({"library", "list", "--json"}).output;
  EXPECT_THAT(list, HasSubstr("\"postScriptName\":\"DejaVuSans\""));
  EXPECT_THAT(list, HasSubstr("\"postScriptName\":\"DejaVuSerif\""));
}

TEST_F(HornbeamProgramTest, ANameThatIsNoTextIsNamedAndTheOtherFontsAreAdded) {
  const HornbeamResult result =
      RunHornbeam({"library", "add", m_home.Folder().Path("f\xFF.ttf"), kFontFolder});
  EXPECT_EQ(result.exitCode, 1);
  EXPECT_THAT(result.errors, HasSubstr("The name isn't UTF-8 text."));
  EXPECT_THAT(result.output, HasSubstr(", 1 failed."));
  EXPECT_THAT(RunHornbeam({"library", "list"}).output, HasSubstr("DejaVuSans-Bold"));
}

TEST_F(HornbeamProgramTest, ALibraryThatCantBeUsedIsExplained) {
  m_home.Folder().Write("data/kiln/vault", "no folder");
  const HornbeamResult list = RunHornbeam({"library", "list"});
  EXPECT_EQ(list.exitCode, 1);
  EXPECT_THAT(list.errors, HasSubstr("database or vault can't be used"));
  const HornbeamResult status = RunHornbeam({"status"});
  EXPECT_EQ(status.exitCode, 1);
  EXPECT_THAT(status.errors, HasSubstr("Kiln has no library: "));
}

TEST_F(HornbeamProgramTest, AReportThatCantBeWrittenIsAFailure) {
  EXPECT_EQ(RunHornbeam({"status"}).exitCode, 0);
  FillLibrary();
  // Closed, so that the connection to Kiln could take its number.
  for (const char* const output : {" library list >/dev/full", " library list >&-"}) {
    ProgramRun run("/bin/sh", {"-c", kHornbeam + std::string(output)});
    EXPECT_EQ(run.Wait(), 1) << output;
    EXPECT_THAT(run.Errors(), HasSubstr("the output couldn't be written"));
  }
}

TEST_F(HornbeamProgramTest, WrongUsageIsToldApartFromFailure) {
  for (const std::vector<std::string>& arguments : {std::vector<std::string>{},
                                                    {"open"},
                                                    {"library"},
                                                    {"nonsense"},
                                                    {"open", "--nonsense", "a.idml"},
                                                    {"library", "add", "--to", "", "a.ttf"},
                                                    {"open", "--wait", "--keep-open", "a.idml"}}) {
    EXPECT_EQ(RunHornbeam(arguments).exitCode, 2) << testing::PrintToString(arguments);
  }
  EXPECT_EQ(RunHornbeam({"--help"}).exitCode, 0);
  EXPECT_THAT(RunHornbeam({"open", "--help"}).output, HasSubstr("--give-back"));
}

}  // namespace
