#include <gtest/gtest.h>

#include <array>

#include "Identity/GlyphMarkSupport.h"
#include "Identity/PostScriptNames.h"
#include "support/FontRecords.h"

namespace {

using Triples = std::vector<std::array<const char*, 3>>;
using Pairs = std::vector<std::array<const char*, 2>>;

TEST(PostScriptNamesTest, Strip) {
  for (const auto& [name, plain, specials] : Triples{{"Foo#12Bar", "Foo12Bar", "FooBar"},
                                                     {"Foo-Bold-Extra", "FooBoldExtra", "FooBold"},
                                                     {"Foo_Bold 2", "FooBold2", "FooBold2"},
                                                     {"#1#2-#3", "123", ""},
                                                     {"-a-b", "ab", "a"},
                                                     {"a#-1-b", "a1b", "a1"},
                                                     {"\xE5\xB0\x8F\xE5\xA1\x9A", "", ""},
                                                     {"\xFF\x80 A", "A", "A"}}) {
    EXPECT_EQ(plain, GFontToolUtils_StripCharsAndNormalizeString(name, false)) << name;
    EXPECT_EQ(specials, GlyphMarkSupport::StripIllegalPostScriptCharacters(name)) << name;
  }
}

TEST(PostScriptNamesTest, MultipleMasterInstances) {
  for (const auto& [given, resolved] : Pairs{{"MinionMM_367_400_", "MinionMM"},
                                             {"FooMM-Bold_200_", "FooMM-Bold"},
                                             {"FooMM_1", "FooMM_1"},
                                             {"Foo_Bold", "Foo_Bold"},
                                             {"MM", "MM"},
                                             {"", ""},
                                             {"_MM_300", "_MM"},
                                             {"\xE5\xB0\x8FMM_300", "\xE5\xB0\x8FMM"}}) {
    std::string name = given;
    GlyphMarkSupport::ResolveMMFontString(&name);
    EXPECT_EQ(resolved, name);
    const auto record = MakeFontRecord({{kGM_PostScriptNameKey, given}});
    GlyphMarkSupport::ResolveDictionaryMMFontName(record.get());
    EXPECT_EQ(resolved, FontValue(record.get(), kGM_PostScriptNameKey));
  }
  std::string notUTF8 = "bad\xFFMM_300";
  GlyphMarkSupport::ResolveMMFontString(&notUTF8);
  EXPECT_EQ("bad\xFFMM_300", notUTF8);
  GlyphMarkSupport::ResolveMMFontString(nullptr);
  GlyphMarkSupport::ResolveDictionaryMMFontName(nullptr);
}

TEST(PostScriptNamesTest, CruftComesOffLayerByLayerInItsBuffer) {
  const std::string longest(126, 'a');
  const std::vector<std::pair<std::string, std::vector<std::string>>> cases = {
      {"ABCDEF+Foo-Bold", {"Foo-Bold", "Foo"}},
      {"Foo (Bar)", {"Foo (Bar", "Foo ", "Foo"}},
      {" Foo", {"Foo"}},
      {"A-B+C", {"A"}},
      {"A B+C", {"A"}},
      {"A+B+C", {"B+C", "C"}},
      {"+", {""}},
      {"+" + longest, {longest}},
      {"-Foo", {}},
      {"(Foo", {}},
      {"Foo", {}},
      {"", {}}};
  for (const auto& [name, expected] : cases) {
    char buffer[128];
    snprintf(buffer, sizeof(buffer), "%s", name.c_str());
    std::vector<std::string> layers;
    while (GlyphMarkSupport::PSNameMightHaveCruftAppended(buffer, sizeof(buffer), buffer)) {
      layers.emplace_back(buffer);
    }
    EXPECT_EQ(expected, layers) << name;
  }
  char small[4] = "xxx";
  EXPECT_FALSE(GlyphMarkSupport::PSNameMightHaveCruftAppended("Plain", sizeof(small), small));
  EXPECT_FALSE(GlyphMarkSupport::PSNameMightHaveCruftAppended("A-B", 0, small));
  EXPECT_FALSE(GlyphMarkSupport::PSNameMightHaveCruftAppended("A-B", 4, nullptr));
  EXPECT_FALSE(GlyphMarkSupport::PSNameMightHaveCruftAppended(nullptr, 4, small));
  EXPECT_STREQ("xxx", small);
  EXPECT_TRUE(GlyphMarkSupport::PSNameMightHaveCruftAppended("Prefix+Longname", sizeof(small), small));
  EXPECT_STREQ("Lon", small);
}

}  // namespace
