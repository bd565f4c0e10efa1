#include <gmock/gmock.h>

#include "EpsTest.h"
#include "Parsers/FontParserEPS.h"

namespace {

using testing::ElementsAre;

using Names = std::vector<std::string>;

struct Case {
  const char* name;
  const char* text;
  const char* found;  // with a bar between names
};

std::ostream& operator<<(std::ostream& out, const Case& row) {
  return out << row.name;
}

constexpr char kStart[] = "%!PS-Adobe-3.0 EPSF-3.0\n";

const Case kComments[] = {
    {"list with continuation lines", "%%DocumentFonts: Foo-Bold\n%%+ Bar\n%%+ Baz\n%%Pages: 1\n",
     "Foo-Bold|Bar|Baz"},
    {"a list ends at the first other line", "%%DocumentFonts: A\n%%Pages: 1\n%%+ B\n", "A"},
    {"the line behind a list is tested itself", "%%DocumentFonts: A\n%%DocumentNeededFonts: B\n", "A|B"},
    {"a key ends in a blank", "%%DocumentFonts:Foo\n", ""},
    {"a key counts anywhere in a line", "showpage %%DocumentFonts: Foo\n", "Foo"},
    {"(atend) is a name like any other", "%%DocumentFonts: (atend)\n%%EndComments\n%%DocumentFonts: Real\n",
     "(atend)|Real"},
    {"a name may hold blanks", "%%DocumentFonts: Foo Bar\n", "Foo Bar"},
    {"a name that is there already, give or take punctuation", "%%DocumentFonts: Foo-Bold\n%%+ FooBold\n",
     "Foo-Bold"},
    {"a Multiple Master instance goes by its base", "%%DocumentFonts: MyriaMM_400_600_\n", "MyriaMM"},
    {"resources other than fonts", "%%DocumentSuppliedResources: procset Foo\n%%+ font Bar\n", "Bar"},
    {"needed resources", "%%DocumentNeededResources: font Foo\n%%+ font Bar-Bold\n", "Foo|Bar-Bold"},
    {"a resource line that ends before its name", "%%DocumentNeededResources: font \nfont %%+ x\n", ""},
    {"no font comment in the header ends the reading", "%%EndComments\n%%DocumentFonts: Foo\n", ""},
    {"a font comment in the header lets it go on",
     "%%DocumentFonts: A\n%%EndComments\nbody\n%%DocumentFonts: B\n", "A|B"},
    {"a subset goes by its font program",
     "%ADOBeginSubsetFont: Sub Initial\n/FontName /Sub-Real def\n%ADOEndSubsetFont\n", "Sub-Real"},
    {"a subset's name ends at a tab",
     "%ADOBeginSubsetFont: Sub\n/FontName /Sub-Tab\tdef\n%ADOEndSubsetFont\n", "Sub-Tab"},
    {"the last name in a subset counts",
     "%ADOBeginSubsetFont: S\n/FontName /One def\n /FontName /No def\n/FontName /Two "
     "def\n%ADOEndSubsetFont\n",
     "Two"},
    {"a subset without a name goes by the comment", "%ADOBeginSubsetFont: Sub Initial\n%ADOEndSubsetFont\n",
     " Sub Initial"},
    {"glyphs added to a subset are no font", "%ADOBeginSubsetFont: Foo AddGlyphs\n%ADOEndSubsetFont\n", ""},
    {"a subset hides the comments in it",
     "%ADOBeginSubsetFont: S AddGlyphs\n%%DocumentFonts: A\n%ADOEndSubsetFont\n%%DocumentFonts: B\n", "B"},
    {"a subset that never ends", "%ADOBeginSubsetFont: S\n/FontName /S-Real def\n%%DocumentFonts: A\n",
     "S-Real"},
    {"a specification takes the place of a name",
     "%%DocumentFonts: Foo\n%%+ Bar\n%%DocumentFontSpecs: <FONTSPEC NAME=\"Foo\"/>\n", "Bar|Foo"},
    {"a specification's name holds no blank",
     "%%DocumentFontSpecs: <FONTSPEC NAME=\"Foo Bar\"/>\n%%+ <FONTSPEC NAME=\"Baz\"/>\n", "Baz"},
    {"a name that is no UTF-8", "%%DocumentFonts: S\xF6hne\n%%+ S\xC3\xB6hne2\n",
     "S\xC3\xB6hne|S\xC3\xB6hne2"},
    {"no specification at all", "%%DocumentFontSpecs: FONTSPEC NAME=\"A\"\n%%+ <OTHER NAME=\"B\"/>\n%%+ \n",
     ""},
    {"damaged specifications",
     "%%DocumentFontSpecs: <FONTSPEC NAME=\"A\" KIND=\"x\n%%+ <FONTSPEC NAME=\"B\n%%+ <FONTSPEC\n", "A"},
};

class EpsCommentsTest : public EpsTest, public testing::WithParamInterface<Case> {
 protected:
  std::string NamesIn(std::string_view bytes) {
    std::string text;
    for (const std::string& name : NamesOf(*Parse(bytes))) text += (text.empty() ? "" : "|") + name;
    return text;
  }
};
INSTANTIATE_TEST_SUITE_P(Rows, EpsCommentsTest, testing::ValuesIn(kComments));

TEST_P(EpsCommentsTest, AreReadWithEveryLineEnd) {
  for (const char* end : {"\n", "\r", "\r\n", "\n\r"}) {
    EpsFixture fixture(std::string(kStart) + GetParam().text);
    EXPECT_EQ(NamesIn(fixture.LineEnd(end).Bytes()), GetParam().found);
    EXPECT_EQ(NamesIn(fixture.DosHeader("II*").Bytes()), GetParam().found);
  }
}

TEST_P(EpsCommentsTest, AreReadWithoutTheLastLineEnd) {
  std::string text = std::string(kStart) + GetParam().text;
  text.pop_back();
  // What a font program's line says counts only when the line is whole.
  EXPECT_EQ(NamesIn(text), GetParam().found);
}

using FontParserEPSTest = EpsTest;

TEST_F(FontParserEPSTest, ReadsTheAttributesOfASpecification) {
  const auto parser = Parse(
      "%!PS\n%%DocumentFontSpecs: <FONTSPEC NAME=\"Foo\" KIND=\"OpenType - PS\" KERNINGCHECKSUM=\"1\""
      " OUTLINEFILESIZE=\"2\" VERSION=\"1.0\" FOUNDRY=\"Acme Type\" CHECKSUM=\"3\" FAMILY='Fo o\" SIZE=\"9\""
      " name=\"Bar\"/>\n");
  const auto fonts = FontsOf(*parser);
  CFDictionaryRef font = FontRecord::At(fonts.get(), 0);
  const std::pair<CFStringRef, const char*> expected[] = {
      {kGM_PostScriptNameKey, "Foo"}, {kGM_KindKey, "OpenType - PS"}, {kGM_KerningChecksumKey, "1"},
      {kGM_OutlineFileSizeKey, "2"},  {kGM_VersionKey, "1.0"},        {kGM_FoundryKey, "Acme Type"},
      {kGM_ChecksumKey, "3"},         {kGM_FamilyKey, "Fo o"}};
  for (const auto& [key, value] : expected) EXPECT_EQ(FontValue(font, key), value);
  EXPECT_EQ(CFDictionaryGetCount(font), 8);
  EXPECT_EQ(CFDictionaryGetCount(FontRecord::At(FontsOf(*parser, false).get(), 0)), 1);
}

TEST_F(FontParserEPSTest, FillsTheArrayGivenAndMakesOneForNull) {
  const auto parser = Parse("%!PS\n%%DocumentFonts: A\n");
  const auto given = MakeFontList({MakeFontRecord({{kGM_PostScriptNameKey, "Mine"}})});
  CFMutableArrayRef fonts = given.get();
  parser->GetObsoleteGlyphmarkData(false, fonts);
  EXPECT_EQ(fonts, given.get());
  EXPECT_THAT(FontNamesOf(given.get()), ElementsAre("Mine", "A"));
}

TEST_F(FontParserEPSTest, FindsCommentsAcrossALongBody) {
  // Comments at many distances, so that some lie across the edge of what is read at once.
  std::string text = "%!PS\n%%DocumentFonts: Start\n%%EndComments\n";
  Names expected{"Start"};
  for (int i = 0; i < 400; ++i) {
    text += std::string(static_cast<size_t>(4000 + i), i % 2 == 0 ? '%' : 'a') + "\n";
    const std::string name = "Font" + std::to_string(i);
    text += i % 3 == 0 ? "%ADOBeginSubsetFont: x\n" + std::string(5000, '/') + "\n/FontName /" + name +
                             " def\n%ADOEndSubsetFont\n"
                       : "%%DocumentFonts: " + name + "\n";
    expected.push_back(name);
  }
  EXPECT_EQ(NamesOf(*Parse(text)), expected);
}

TEST_F(FontParserEPSTest, KeepsAMebibyteOfALine) {
  const std::string name(2 << 20, 'n');
  const auto parser = Parse("%!PS\n%%DocumentFonts: " + name + "%%DocumentFonts: x\n%%+ Next\n");
  const Names names = NamesOf(*parser);
  ASSERT_EQ(names.size(), 2U);
  EXPECT_EQ(names[0].size(), (1U << 20) - std::string("%%DocumentFonts: ").size());
  EXPECT_EQ(names[1], "Next");
}

TEST_F(FontParserEPSTest, NamesThatComeAgainAndAgainCostNoMore) {
  std::string text = "%!PS\n%%DocumentFontSpecs: <FONTSPEC NAME=\"x\"/>\n";
  Names expected{"x"};
  for (int i = 0; i < 60000; ++i) {
    // All the same when stripped.
    const std::string name = "F-Q-" + std::to_string(i % 20000);
    text += "%%+ <FONTSPEC NAME=\"" + name + "\"/>\n";
    if (i < 20000) expected.push_back(name);
  }
  EXPECT_EQ(NamesOf(*Parse(text)), expected);
}

TEST_F(FontParserEPSTest, SurvivesHeadersThatLie) {
  const std::string text = "%!PS\n%%DocumentFonts: A\n%%EndComments\n";
  for (const char byte : {'\0', '\x7F', '\xFF'}) {
    for (size_t field = 4; field < 32; field += 4) {
      std::string bytes = EpsFixture(text).DosHeader("II*").Bytes();
      bytes.replace(field, 4, 4, byte);
      const Names names = NamesOf(*Parse(bytes));
      EXPECT_EQ(names, field == 4 && byte != 0 ? Names() : Names{"A"}) << "field at " << field;
    }
  }
}

}  // namespace
