#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "idml/PackageReader.h"
#include "support/IdmlFixture.h"
#include "support/TemporaryFolder.h"

namespace {

idml::Document Read(const IdmlFixture& fixture) {
  const TemporaryFolder folder;
  std::string error;
  const auto document = idml::ReadPackage(fixture.Write(folder.Path("a.idml")), error);
  EXPECT_TRUE(document) << error;
  return document.value_or(idml::Document());
}

TEST(PackageReaderTest, TellsTheFontTableWithoutMarks) {
  const idml::Document document = Read(IdmlFixture(R"(=== Resources/Fonts.xml
<FontFamily Name="$ID/Times">
  <Font FontFamily="$ID/Times" FontStyleName="Roman" PostScriptName="$ID/Times-Roman" FullName="Times Roman" FontType="TrueType" Status="Installed"/>
  <Font FontFamily="$ID/Times" FontStyleName="Nameless" PostScriptName=""/>
</FontFamily>
<FontFamily Name="Quillmere"><Font FontStyleName="Display" PostScriptName="Quillmere-Display" Status="NotAvailable"/></FontFamily>
)"));
  ASSERT_EQ(document.families.size(), 2u);
  EXPECT_EQ(document.families[0].name, "Times");
  ASSERT_EQ(document.families[0].faces.size(), 2u);
  EXPECT_EQ(document.families[0].faces[0].postScriptName, "Times-Roman");
  EXPECT_EQ(document.families[0].faces[1].postScriptName, "");
  EXPECT_EQ(document.families[1].name, "Quillmere");
  EXPECT_EQ(document.families[1].faces[0].status, "NotAvailable");
}

TEST(PackageReaderTest, ReadsStoriesInTheDocumentsOrder) {
  IdmlFixture fixture;
  const auto story = [](const std::string& font) {
    return "<CharacterStyleRange AppliedFont='" + font + "'><Content>x</Content></CharacterStyleRange>";
  };
  fixture.SetBody("Stories/Story_u1.xml", story("One"));
  fixture.SetBody("Stories/Story_u2.xml", story("Two"));
  fixture.SetBody("Stories/Story_u3.xml", story("Three"));
  fixture.Set(
      "designmap.xml",
      "<?xml version='1.0'?><Document StoryList='u2 u9 u1'>"
      "<idPkg:Story src='Stories/Story_u3.xml'/><idPkg:Story src='Stories/Story_u1.xml'/>"
      "<idPkg:Story src='Stories/Story_u2.xml'/><idPkg:Story src='Stories/Story_u1.xml'/></Document>");
  std::vector<std::string> families;
  for (const auto& variant : Read(fixture).usedVariants) families.push_back(variant.family);
  EXPECT_EQ(families, (std::vector<std::string>{"Two", "One", "Three"}));
}

TEST(PackageReaderTest, FindsLinksOfSpreadsAndStoriesWithTheTimeOfPlacing) {
  const std::vector<idml::Link> links = Read(IdmlFixture(R"idml(=== Stories/Story_u1.xml
<Rectangle><PDF><Link LinkResourceURI="file:/story.pdf" LinkResourceFormat="$ID/PDF" StoredState="Embedded"/></PDF></Rectangle>
=== Spreads/Spread_a.xml
<Spread><Group><EPS><Link LinkResourceURI="file:/a%20b.eps" LinkResourceFormat="$ID/EPS" StoredState="Normal"
  LinkImportStamp="file 129013058020000000 343092"/></EPS></Group></Spread>
=== MasterSpreads/Master_a.xml
<MasterSpread><Link LinkResourceURI="file:/c.tif" StoredState="LinkOutOfDate" LinkImportStamp="file x"/></MasterSpread>
)idml"))
                                            .links;
  ASSERT_EQ(links.size(), 3u);
  EXPECT_EQ(links[0].uri, "file:/a%20b.eps");
  EXPECT_EQ(links[0].format, "EPS");
  EXPECT_EQ(links[0].importTime, 1256832202);
  EXPECT_EQ(links[0].importSize, 343092u);
  EXPECT_TRUE(links[1].outOfDate);
  EXPECT_FALSE(links[1].importTime);
  EXPECT_TRUE(links[2].embedded);
}

TEST(PackageReaderTest, ReadsTheExampleThatIsPackedFromItsSources) {
  const auto example =
      (std::filesystem::path(HORNBEAM_FIXTURES) / "../../examples/brochure.idml").lexically_normal();
  std::string error;
  const auto document = idml::ReadPackage(example.string(), error);
  ASSERT_TRUE(document) << error;
  std::vector<std::string> used;
  for (const auto& variant : document->usedVariants) used.push_back(variant.family + "/" + variant.style);
  EXPECT_EQ(used, (std::vector<std::string>{"Quillmere/Display", "Lato/Italic", "Lato/Bold",
                                            "EB Garamond/12 Regular", "EB Garamond/12 Italic",
                                            "EB Garamond/12 Bold", "Cabin/SemiBold", "Cabin/Regular",
                                            "Lato/Black", "Lato/Regular", "Cabin/Medium Italic"}));
}

}  // namespace
