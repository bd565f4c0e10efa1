#include <gtest/gtest.h>
#include <sys/stat.h>

#include <fstream>
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

struct BadPackageCase {
  const char* name;
  const char* part;
  const char* text;  // null leaves the part out
  const char* message;
  // Behind the text; with its number for "#", and the next one's, in a circle, for "@".
  const char* repeated = "";
  int count = 0;
  const char* closing = "";  // behind those, as often
};

class BadPackageTest : public testing::TestWithParam<BadPackageCase> {};

std::string TextOf(const BadPackageCase& row) {
  std::string text = row.text;
  for (int i = 0; i < row.count; ++i) {
    for (const char* c = row.repeated; *c != 0; ++c) {
      if (*c == '#') {
        text += std::to_string(i);
      } else if (*c == '@') {
        text += std::to_string((i + 1) % row.count);
      } else {
        text += *c;
      }
    }
  }
  for (int i = 0; i < row.count; ++i) text += row.closing;
  return text;
}

TEST_P(BadPackageTest, IsRefusedWithItsNameAndPart) {
  const TemporaryFolder folder;
  IdmlFixture fixture(kGood);
  if (GetParam().text == nullptr) {
    fixture.Remove(GetParam().part);
  } else if (const std::string text = TextOf(GetParam()); text.empty()) {
    fixture.Set(GetParam().part, text);
  } else {
    fixture.SetBody(GetParam().part, text);
  }
  const std::string path = fixture.Write(folder.Path("bad.idml"));
  std::string error;
  EXPECT_FALSE(idml::ReadPackage(path, error));
  EXPECT_EQ(error.compare(0, path.size() + 2, path + ": "), 0) << error;
  EXPECT_NE(error.find(GetParam().message), std::string::npos) << error;
}

constexpr char kStory[] = "Stories/Story_u1.xml";
constexpr char kStyles[] = "Resources/Styles.xml";
constexpr char kFonts[] = "Resources/Fonts.xml";

const BadPackageCase kCases[] = {
    {"NoDesignMap", "designmap.xml", nullptr, "missing part designmap.xml"},
    {"NoFonts", kFonts, nullptr, "missing part Resources/Fonts.xml"},
    {"NoStory", kStory, nullptr, "missing part Stories/Story_u1.xml"},
    {"AnotherKind", "mimetype", "application/epub+zip", "another kind"},
    {"BrokenXml", kStory, "<?xml version='1.0'?><a><b></a>", "Stories/Story_u1.xml: offset"},
    {"EmptyPart", kStyles, "", "Resources/Styles.xml: offset 0"},
    {"EntityBomb", kStory,
     "<?xml version='1.0'?><!DOCTYPE l [<!ENTITY a 'ha'><!ENTITY b '&a;&a;&a;&a;'>]><l>&b;</l>",
     "Stories/Story_u1.xml: declares entities"},
    {"NamesThatSteerATerminal", "designmap.xml",
     "<?xml version='1.0'?><Document xmlns:idPkg='x'><idPkg:Story src='a&#27;[2Jb'/></Document>",
     "missing part a?[2Jb"},
    {"ZipBomb", kStory, "", "Stories/Story_u1.xml: unpacks to", " ",
     static_cast<int>(idml::limits::kMaximumPartSize)},
    {"ZipBombByRatio", kStory, "", "as no document does", " ", 8 << 20},
    {"DeepNesting", kStory, "", "nested too deep", "<Group>", 20'000, "</Group>"},
    {"StylesInACircle", kStyles, "", "is based on itself",
     "<CharacterStyle Self='CharacterStyle/#' BasedOn='CharacterStyle/@'/>", 1000},
    {"ManyStyles", kStyles, "", "styles", "<CharacterStyle Self='CharacterStyle/#'/>", 30'000},
    {"ManyFonts", kFonts, "", "Resources/Fonts.xml: lists more than",
     "<FontFamily Name='F'><Font FontFamily='F#' FontStyleName='S'/></FontFamily>", 100'000},
    {"ManyUsedFonts", kStory, "", "text uses more than",
     "<CharacterStyleRange AppliedFont='F#'><Content>x</Content></CharacterStyleRange>", 100'000},
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
