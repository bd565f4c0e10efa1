#include <gtest/gtest.h>
#include <sys/stat.h>

#include <fstream>
#include <functional>
#include <iterator>
#include <string>

#include "idml/Limits.h"
#include "idml/PackageReader.h"
#include "support/IdmlFixture.h"
#include "support/TemporaryFolder.h"

namespace {

constexpr char kGood[] = R"(
=== Resources/Fonts.xml
<FontFamily Name="F"><Font FontFamily="F" FontStyleName="S" PostScriptName="F-S"/></FontFamily>
=== Resources/Styles.xml
<RootParagraphStyleGroup><ParagraphStyle Self="ParagraphStyle/A" AppliedFont="F"/></RootParagraphStyleGroup>
=== Stories/Story_u1.xml
<ParagraphStyleRange AppliedParagraphStyle="ParagraphStyle/A"><Content>text</Content></ParagraphStyleRange>
)";

std::string Numbered(std::size_t count, const std::function<std::string(const std::string&)>& element) {
  std::string all;
  for (std::size_t i = 0; i < count; ++i) all += element(std::to_string(i));
  return all;
}

struct BadPackageCase {
  const char* name;
  std::function<void(IdmlFixture&)> spoil;
  const char* message;
};

class BadPackageTest : public testing::TestWithParam<BadPackageCase> {};

TEST_P(BadPackageTest, IsRefusedWithItsNameAndPart) {
  const TemporaryFolder folder;
  IdmlFixture fixture(kGood);
  GetParam().spoil(fixture);
  const std::string path = fixture.Write(folder.Path("bad.idml"));
  std::string error;
  EXPECT_FALSE(idml::ReadPackage(path, error));
  EXPECT_EQ(error.compare(0, path.size() + 2, path + ": "), 0) << error;
  EXPECT_NE(error.find(GetParam().message), std::string::npos) << error;
}

const BadPackageCase kCases[] = {
    {"NoDesignMap", [](IdmlFixture& f) { f.Remove("designmap.xml"); }, "missing part designmap.xml"},
    {"NoFonts", [](IdmlFixture& f) { f.Remove("Resources/Fonts.xml"); }, "missing part Resources/Fonts.xml"},
    {"NoStory", [](IdmlFixture& f) { f.Remove("Stories/Story_u1.xml"); },
     "missing part Stories/Story_u1.xml"},
    {"AnotherKind", [](IdmlFixture& f) { f.Set("mimetype", "application/epub+zip"); }, "another kind"},
    {"BrokenXml", [](IdmlFixture& f) { f.Set("Stories/Story_u1.xml", "<?xml version='1.0'?><a><b></a>"); },
     "Stories/Story_u1.xml: offset"},
    {"EmptyPart", [](IdmlFixture& f) { f.Set("Resources/Styles.xml", ""); },
     "Resources/Styles.xml: offset 0"},
    {"EntityBomb",
     [](IdmlFixture& f) {
       f.Set("Stories/Story_u1.xml",
             "<?xml version='1.0'?><!DOCTYPE l [<!ENTITY a 'ha'><!ENTITY b '&a;&a;&a;&a;'>]><l>&b;</l>");
     },
     "Stories/Story_u1.xml: declares entities"},
    {"ZipBomb",
     [](IdmlFixture& f) {
       f.SetBody("Stories/Story_u1.xml", std::string(idml::limits::kMaximumPartSize, ' '));
     },
     "Stories/Story_u1.xml: unpacks to"},
    {"ZipBombByRatio", [](IdmlFixture& f) { f.SetBody("Stories/Story_u1.xml", std::string(8 << 20, ' ')); },
     "as no document does"},
    {"DeepNesting",
     [](IdmlFixture& f) {
       f.SetBody("Stories/Story_u1.xml", Numbered(20'000, [](const std::string&) { return "<Group>"; }) +
                                             Numbered(20'000, [](const std::string&) { return "</Group>"; }));
     },
     "nested too deep"},
    {"StyleOnItself",
     [](IdmlFixture& f) {
       f.SetBody(
           "Resources/Styles.xml",
           "<R><ParagraphStyleGroup/></R><RootParagraphStyleGroup>"
           "<ParagraphStyle Self='ParagraphStyle/A' BasedOn='ParagraphStyle/A'/></RootParagraphStyleGroup>");
     },
     "style \"ParagraphStyle/A\" is based on itself"},
    {"StylesInACircle",
     [](IdmlFixture& f) {
       f.SetBody("Resources/Styles.xml",
                 "<RootCharacterStyleGroup>" + Numbered(1000, [](const std::string& i) {
                   return "<CharacterStyle Self='CharacterStyle/" + i + "' BasedOn='CharacterStyle/" +
                          std::to_string((std::stoi(i) + 1) % 1000) + "'/>";
                 }) + "</RootCharacterStyleGroup>");
     },
     "is based on itself"},
    {"ManyStyles",
     [](IdmlFixture& f) {
       f.SetBody("Resources/Styles.xml",
                 "<RootCharacterStyleGroup>" + Numbered(30'000, [](const std::string& i) {
                   return "<CharacterStyle Self='CharacterStyle/" + i + "'/>";
                 }) + "</RootCharacterStyleGroup>");
     },
     "styles"},
    {"ManyFonts",
     [](IdmlFixture& f) {
       f.SetBody("Resources/Fonts.xml", "<FontFamily Name='F'>" + Numbered(100'000, [](const std::string& i) {
                                          return "<Font FontFamily='F" + i + "' FontStyleName='S'/>";
                                        }) + "</FontFamily>");
     },
     "Resources/Fonts.xml: lists more than"},
    {"ManyUsedFonts",
     [](IdmlFixture& f) {
       f.SetBody("Stories/Story_u1.xml", Numbered(100'000, [](const std::string& i) {
                   return "<CharacterStyleRange AppliedFont='F" + i +
                          "'><Content>x</Content></CharacterStyleRange>";
                 }));
     },
     "text uses more than"},
    {"NamesThatSteerATerminal",
     [](IdmlFixture& f) {
       f.Set("designmap.xml",
             "<?xml version='1.0'?><Document xmlns:idPkg='x'>"
             "<idPkg:Story src='a&#27;[2Jb'/></Document>");
     },
     "missing part a?[2Jb"},
};

INSTANTIATE_TEST_SUITE_P(Package, BadPackageTest, testing::ValuesIn(kCases),
                         [](const auto& row) { return row.param.name; });

TEST(BadFileTest, IsRefusedWithoutWaiting) {
  const TemporaryFolder folder;
  ASSERT_EQ(mkfifo(folder.Path("pipe").c_str(), 0600), 0);
  folder.MakeFolder("folder");
  folder.Write("text", "only text");
  folder.Write("empty", "");
  for (const auto& [name, message] :
       {std::pair("pipe", "no regular file"), std::pair("folder", "is a folder"),
        std::pair("text", "not a zip archive"), std::pair("empty", "zip"),
        std::pair("gone", "No such file")}) {
    std::string error;
    EXPECT_FALSE(idml::ReadPackage(folder.Path(name), error)) << name;
    EXPECT_NE(error.find(message), std::string::npos) << error;
  }
}

// Every cut and a sprinkling of flipped bytes: the result is a document or a message, and nothing else.
TEST(BadFileTest, DamageAnywhereEndsInAMessageOrADocument) {
  const TemporaryFolder folder;
  const std::string path = IdmlFixture(kGood).Write(folder.Path("good.idml"));
  std::ifstream in(path, std::ios::binary);
  const std::string bytes{std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
  for (std::size_t at = 0; at < bytes.size(); at += 7) {
    std::string flipped = bytes;
    flipped[at] = static_cast<char>(flipped[at] ^ 0x55);
    for (const std::string& damaged : {bytes.substr(0, at), flipped}) {
      std::string error;
      const auto document = idml::ReadPackage(folder.Write("damaged.idml", damaged), error);
      EXPECT_EQ(document.has_value(), error.empty()) << at;
    }
  }
}

}  // namespace
