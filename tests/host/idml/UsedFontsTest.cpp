#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "idml/PackageReader.h"
#include "support/IdmlFixture.h"
#include "support/TemporaryFolder.h"

namespace {

// Families and styles are named so that each tells where it comes from.
constexpr char kResources[] = R"(
=== Resources/Fonts.xml
<FontFamily Name="Root"><Font FontFamily="Root" FontStyleName="Plain" PostScriptName="Root-Plain"/></FontFamily>
<CompositeFont Name="Mixed">
  <CompositeFontEntry FontStyle="$ID/Light"><Properties><AppliedFont type="string">Kana</AppliedFont></Properties></CompositeFontEntry>
  <CompositeFontEntry FontStyle="Bold"><Properties><AppliedFont type="string">Latin</AppliedFont></Properties></CompositeFontEntry>
</CompositeFont>
=== Resources/Styles.xml
<RootCharacterStyleGroup>
  <CharacterStyle Self="CharacterStyle/$ID/[No character style]"/>
  <CharacterStyle Self="CharacterStyle/Strong" FontStyle="Strong"/>
  <CharacterStyle Self="CharacterStyle/Louder" AppliedFont="Loud"><Properties><BasedOn type="object">CharacterStyle/Strong</BasedOn></Properties></CharacterStyle>
</RootCharacterStyleGroup>
<RootParagraphStyleGroup>
  <ParagraphStyle Self="ParagraphStyle/$ID/[No paragraph style]" FontStyle="Plain"><Properties><AppliedFont type="string">Root</AppliedFont></Properties></ParagraphStyle>
  <ParagraphStyle Self="ParagraphStyle/Body" FontStyle="$ID/Book"><Properties><BasedOn type="string">$ID/[No paragraph style]</BasedOn></Properties></ParagraphStyle>
  <ParagraphStyleGroup Self="g"><ParagraphStyleGroup Self="gg">
    <ParagraphStyle Self="ParagraphStyle/Heads%3aHead" AppliedFont="Head"><Properties><BasedOn type="object">ParagraphStyle/Body</BasedOn></Properties></ParagraphStyle>
  </ParagraphStyleGroup></ParagraphStyleGroup>
  <ParagraphStyle Self="ParagraphStyle/Bullets" BulletsAndNumberingListType="BulletList"><Properties><BasedOn type="string">$ID/[No paragraph style]</BasedOn>
    <BulletsFont type="string">Dingbats</BulletsFont><BulletsFontStyle type="enumeration">Nothing</BulletsFontStyle></Properties></ParagraphStyle>
  <ParagraphStyle Self="ParagraphStyle/Numbers" BulletsAndNumberingListType="NumberedList"><Properties><BasedOn type="string">$ID/[No paragraph style]</BasedOn>
    <NumberingCharacterStyle type="object">CharacterStyle/Louder</NumberingCharacterStyle></Properties></ParagraphStyle>
  <ParagraphStyle Self="ParagraphStyle/RunIn"><Properties><BasedOn type="string">$ID/[No paragraph style]</BasedOn>
    <AllNestedStyles type="list"><ListItem type="record"><AppliedCharacterStyle type="object">CharacterStyle/Strong</AppliedCharacterStyle></ListItem></AllNestedStyles></Properties></ParagraphStyle>
  <ParagraphStyle Self="ParagraphStyle/Nobody" AppliedFont="Nobody"/>
  <ParagraphStyle Self="copy ParagraphStyle/$ID/[No paragraph style]" FontStyle="Copy" AppliedFont="Copied"/>
  <ParagraphStyle Self="copy ParagraphStyle/Body"><Properties><BasedOn type="string">$ID/[No paragraph style]</BasedOn></Properties></ParagraphStyle>
</RootParagraphStyleGroup>
)";

struct UsedFontsCase {
  const char* name;
  const char* story;
  std::vector<std::string> used;  // "family/style" in the order found.
};

class UsedFontsTest : public testing::TestWithParam<UsedFontsCase> {};

TEST_P(UsedFontsTest, AreThoseThatTextIsSetIn) {
  const TemporaryFolder folder;
  IdmlFixture fixture(kResources);
  fixture.SetBody("Stories/Story_u1.xml", GetParam().story);
  std::string error;
  const auto document = idml::ReadPackage(fixture.Write(folder.Path("a.idml")), error);
  ASSERT_TRUE(document) << error;
  std::vector<std::string> used;
  for (const auto& variant : document->usedVariants) used.push_back(variant.family + "/" + variant.style);
  EXPECT_EQ(used, GetParam().used);
}

#define PARAGRAPH(style, runs) \
  "<ParagraphStyleRange AppliedParagraphStyle='ParagraphStyle/" style "'>" runs "</ParagraphStyleRange>"
#define RUN(attributes, inner)                                                                       \
  "<CharacterStyleRange AppliedCharacterStyle='CharacterStyle/$ID/[No character style]' " attributes \
  ">" inner "</CharacterStyleRange>"
#define STYLED(style, inner) \
  "<CharacterStyleRange AppliedCharacterStyle='CharacterStyle/" style "'>" inner "</CharacterStyleRange>"
#define TEXT "<Content>text</Content>"

const UsedFontsCase kCases[] = {
    {"RootStyle", PARAGRAPH("$ID/[No paragraph style]", RUN("", TEXT)), {"Root/Plain"}},
    {"StyleInheritsFamily", PARAGRAPH("Body", RUN("", TEXT)), {"Root/Book"}},
    {"StyleInGroupsOfGroups", PARAGRAPH("Heads%3aHead", RUN("", TEXT)), {"Head/Book"}},
    {"UnknownStyleIsTheRoot", PARAGRAPH("Gone", RUN("", TEXT)), {"Root/Plain"}},
    {"StyleOfAnotherOrigin",
     "<ParagraphStyleRange AppliedParagraphStyle='copy ParagraphStyle/Body'>" RUN(
         "", TEXT) "</ParagraphStyleRange>",
     {"Copied/Copy"}},
    {"CharacterStyleOverParagraphStyle", PARAGRAPH("Body", STYLED("Strong", TEXT)), {"Root/Strong"}},
    {"CharacterStyleInherits", PARAGRAPH("Body", STYLED("Louder", TEXT)), {"Loud/Strong"}},
    {"LocalOverStyles", PARAGRAPH("Body", RUN("FontStyle='Local'", TEXT)), {"Root/Local"}},
    {"LocalFontAsProperty",
     PARAGRAPH("Body", RUN("FontStyle='X'",
                           "<Properties><AppliedFont type='string'>Here</AppliedFont></Properties>" TEXT)),
     {"Here/X"}},
    {"FamilyAndStyleInOne", PARAGRAPH("Body", RUN("AppliedFont='Here&#9;Bold'", TEXT)), {"Here/Bold"}},
    {"CharacterStyleOverLocalParagraph",
     "<ParagraphStyleRange AppliedParagraphStyle='ParagraphStyle/Body' FontStyle='Par'>" RUN("", TEXT)
         STYLED("Strong", TEXT) "</ParagraphStyleRange>",
     {"Root/Par", "Root/Strong"}},
    {"EachOnceInOrder",
     PARAGRAPH("Body", RUN("FontStyle='B'", TEXT) RUN("", TEXT) RUN("FontStyle='B'", TEXT)),
     {"Root/B", "Root/Book"}},
    {"RangesWithoutTextUseNothing",
     PARAGRAPH("Nobody", RUN("", "<Content></Content><Br/>") RUN("FontStyle='X'", "")),
     {}},
    {"ABlankIsText", PARAGRAPH("Body", RUN("", "<Content> </Content>")), {"Root/Book"}},
    {"APageNumberIsText", PARAGRAPH("Body", RUN("", "<Content><?ACE 18?></Content>")), {"Root/Book"}},
    {"AVariableIsText",
     PARAGRAPH("Body", RUN("", "<TextVariableInstance ResultText='May'/>")),
     {"Root/Book"}},
    {"TableCells",
     PARAGRAPH("Nobody", RUN("", "<Table><Cell>" PARAGRAPH("Body", RUN("", TEXT)) "</Cell></Table>")),
     {"Root/Book"}},
    {"FootnotesAndNotes",
     PARAGRAPH("Body", RUN("FontStyle='A'", "<Footnote>" PARAGRAPH("Body", RUN("", TEXT)) "</Footnote>")
                           RUN("", "<Note>" PARAGRAPH("Heads%3aHead", RUN("", TEXT)) "</Note>")),
     {"Root/Book", "Head/Book"}},
    {"HiddenText",
     PARAGRAPH("Body", "<HiddenText>" PARAGRAPH("Heads%3aHead", RUN("", TEXT)) "</HiddenText>"),
     {"Head/Book"}},
    {"DeletedTextIsGone",
     PARAGRAPH("Body", "<Change ChangeType='DeletedText'>" RUN(
                           "FontStyle='Old'", TEXT) "</Change>"
                                                    "<Change ChangeType='InsertedText'>" RUN(
                                                        "FontStyle='New'", TEXT) "</Change>"),
     {"Root/New"}},
    {"RangesWithinHyperlinksAndTags",
     PARAGRAPH("Body", "<XMLElement><HyperlinkTextSource>" RUN(
                           "FontStyle='Link'",
                           TEXT) "</HyperlinkTextSource></XMLElement>" RUN("FontStyle='Run'",
                                                                           "<HyperlinkTextSource><Content>x</"
                                                                           "Content></HyperlinkTextSource>")),
     {"Root/Link", "Root/Run"}},
    {"CompositeFontIsItsParts",
     PARAGRAPH("Body", RUN("AppliedFont='Mixed'", TEXT)),
     {"Kana/Light", "Latin/Bold"}},
    {"BulletWithItsFont", PARAGRAPH("Bullets", RUN("", TEXT)), {"Dingbats/Plain", "Root/Plain"}},
    {"NumberWithItsStyle", PARAGRAPH("Numbers", RUN("", TEXT)), {"Loud/Strong", "Root/Plain"}},
    {"ListWithoutTextHasNoBullet", PARAGRAPH("Bullets", RUN("", "<Br/>")), {}},
    {"NestedStyle", PARAGRAPH("RunIn", RUN("", TEXT)), {"Root/Strong", "Root/Plain"}},
    {"NamesThatAreNone", PARAGRAPH("Body", RUN("AppliedFont='a&#7;b' FontStyle=''", TEXT)), {"Root/Book"}},
};

INSTANTIATE_TEST_SUITE_P(Story, UsedFontsTest, testing::ValuesIn(kCases),
                         [](const auto& row) { return row.param.name; });

}  // namespace
