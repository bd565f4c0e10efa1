#include <gtest/gtest.h>

#include "Identity/GlyphMarkSupport.h"
#include "Identity/PostScriptNames.h"
#include "support/FontRecords.h"

namespace {

TEST(PostScriptNamesTest, Strip) {
  struct Case {
    const char* name;
    const char* plain;
    const char* specials;
  };
  for (const Case& row :
       {Case{"Foo#12Bar", "Foo12Bar", "FooBar"}, Case{"Foo-Bold-Extra", "FooBoldExtra", "FooBold"},
        Case{"Foo_Bold 2", "FooBold2", "FooBold2"}, Case{"#1#2-#3", "123", ""}, Case{"--", "", ""},
        Case{"-a-b", "ab", "a"}, Case{"a#-1-b", "a1b", "a1"}, Case{"Kiln\xC3\xA9", "Kiln", "Kiln"},
        Case{"\xE5\xB0\x8F\xE5\xA1\x9A", "", ""}, Case{"\xFF\x80 A", "A", "A"}, Case{"", "", ""}}) {
    EXPECT_EQ(row.plain, GFontToolUtils_StripCharsAndNormalizeString(row.name, false)) << row.name;
    EXPECT_EQ(row.specials, GlyphMarkSupport::StripIllegalPostScriptCharacters(row.name)) << row.name;
  }
}

TEST(PostScriptNamesTest, MatchLevels) {
  struct Case {
    const char* a;
    const char* b;
    int loosestThatFails;  // 3: never
  };
  for (const Case& row :
       {Case{"Foo", "Foo", 0}, Case{"Foo-Bold", "Foo Bold", 1}, Case{"Foo-Bold-123", "Foo-Bold-456", 2},
        Case{"Foo#1", "Foo#2", 2}, Case{"Foo", "foo", 3}, Case{"()", "--", 1},
        Case{"\xE5\xB0\x8F", "\xE5\xA1\x9A", 1}, Case{"", "", 0}, Case{"A", "", 3}}) {
    for (int level = 1; level <= 3; ++level) {
      EXPECT_EQ(level > row.loosestThatFails,
                GFontToolUtils_DoPostScriptNamesMatch(row.a, row.b, static_cast<EMatchLevel>(level)))
          << row.a << " " << row.b << " " << level;
    }
  }
}

TEST(PostScriptNamesTest, MultipleMasterInstances) {
  struct Case {
    const char* name;
    const char* resolved;  // the name itself where it is no instance
  };
  for (const Case& row : {Case{"MinionMM_367_400_", "MinionMM"}, Case{"FooMM-Bold_200_", "FooMM-Bold"},
                          Case{"FooMM_1", "FooMM_1"}, Case{"Foo_Bold", "Foo_Bold"}, Case{"MM", "MM"},
                          Case{"", ""}, Case{"_MM_300", "_MM"}, Case{"\xE5\xB0\x8FMM_300", "\xE5\xB0\x8FMM"},
                          Case{"bad\xFFMM_300", "bad\xFFMM_300"}}) {
    std::string name = row.name;
    GlyphMarkSupport::ResolveMMFontString(&name);
    EXPECT_EQ(row.resolved, name);
    const auto record = MakeFontRecord({{kGM_PostScriptNameKey, row.name}});
    GlyphMarkSupport::ResolveDictionaryMMFontName(record.get());
    EXPECT_EQ(FontValue(MakeFontRecord({{kGM_PostScriptNameKey, row.resolved}}).get(), kGM_PostScriptNameKey),
              FontValue(record.get(), kGM_PostScriptNameKey));
  }
  GlyphMarkSupport::ResolveMMFontString(nullptr);
  GlyphMarkSupport::ResolveDictionaryMMFontName(nullptr);
}

TEST(PostScriptNamesTest, CruftComesOffLayerByLayer) {
  struct Case {
    const char* name;
    std::vector<std::string> layers;
  };
  for (const Case& row :
       {Case{"ABCDEF+Foo-Bold", {"Foo-Bold", "Foo"}}, Case{"Foo", {}}, Case{"-Foo", {}},
        Case{" Foo", {"Foo"}}, Case{"Foo (Bar)", {"Foo (Bar", "Foo ", "Foo"}}, Case{"A-B+C", {"A"}},
        Case{"+", {""}}, Case{"A+B+C", {"B+C", "C"}}, Case{"A B+C", {"A"}}, Case{"(Foo", {}}, Case{"", {}}}) {
    char buffer[128];
    snprintf(buffer, sizeof(buffer), "%s", row.name);
    std::vector<std::string> layers;
    while (GlyphMarkSupport::PSNameMightHaveCruftAppended(buffer, sizeof(buffer), buffer))
      layers.emplace_back(buffer);
    EXPECT_EQ(row.layers, layers) << row.name;
  }
}

TEST(PostScriptNamesTest, CruftStaysInItsBuffer) {
  char small[4] = {'x', 'x', 'x', 'x'};
  EXPECT_TRUE(GlyphMarkSupport::PSNameMightHaveCruftAppended("Prefix+Longname", sizeof(small), small));
  EXPECT_STREQ("Lon", small);
  EXPECT_FALSE(GlyphMarkSupport::PSNameMightHaveCruftAppended("Plain", sizeof(small), small));
  EXPECT_STREQ("Lon", small);
  EXPECT_FALSE(GlyphMarkSupport::PSNameMightHaveCruftAppended("A-B", 0, small));
  EXPECT_FALSE(GlyphMarkSupport::PSNameMightHaveCruftAppended("A-B", 4, nullptr));
  EXPECT_FALSE(GlyphMarkSupport::PSNameMightHaveCruftAppended(nullptr, 4, small));
  char full[128];
  std::string name(127, 'a');
  name[0] = '+';
  std::copy(name.c_str(), name.c_str() + name.size() + 1, full);
  EXPECT_TRUE(GlyphMarkSupport::PSNameMightHaveCruftAppended(full, sizeof(full), full));
  EXPECT_EQ(std::string(126, 'a'), full);
}

TEST(PostScriptNamesTest, IllegalCharactersGo) {
  struct Case {
    const char* name;
    const char* expected;
  };
  for (const Case& row : {Case{"Foo Bold", "FooBold"}, Case{"(F)/[o]{o}", "Foo"}, Case{"<%>", "<%>"},
                          Case{"\xE5\xB0\x8F \xE5\xA1\x9A", "\xE5\xB0\x8F\xE5\xA1\x9A"}}) {
    const auto stripped =
        adoptCF(CreateStringStrippingIllegalCharsInPostScriptName(ToCFString(row.name).get()));
    EXPECT_EQ(row.expected, ToStdString(stripped.get()));
  }
  EXPECT_EQ(nullptr, CreateStringStrippingIllegalCharsInPostScriptName(nullptr));
  EXPECT_EQ(nullptr, CreateStringStrippingIllegalCharsInPostScriptName(CFSTR("()[] ")));
}

}  // namespace
