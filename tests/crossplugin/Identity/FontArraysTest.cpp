#include <gtest/gtest.h>

#include <random>

#include "Identity/GlyphMarkSupport.h"
#include "Identity/IndexedFontArray.h"
#include "Identity/PostScriptNames.h"
#include "support/FontRecords.h"

namespace {

using Names = std::vector<std::string>;

RetainPtr<CFMutableArrayRef> MakeNamed(const Names& names) {
  auto fonts = MakeArray();
  for (const std::string& name : names)
    CFArrayAppendValue(fonts.get(), MakeFontRecord({{kGM_PostScriptNameKey, name}}).get());
  return fonts;
}

long FindIn(CFArrayRef fonts, const std::string& name) {
  long index = -1;
  const bool found =
      GlyphMarkSupport::DoesArrayContainFontWithPostScriptName(fonts, ToCFString(name).get(), &index);
  EXPECT_EQ(found, index >= 0);
  return index;
}

TEST(FontLookupTest, StricterMatchesWinWhereverTheyStand) {
  struct Case {
    const char* name;
    long expected;
  };
  const auto fonts = MakeNamed({"Foo-Bold-1", "Foo Bold", "Foo-Bold", "Bar#1", "\xE5\xB0\x8F"});
  CFArrayInsertValueAtIndex(fonts.get(), 0, CFSTR("no record"));
  CFArrayInsertValueAtIndex(fonts.get(), 1, MakeFontRecord({{kGM_KindKey, "nameless"}}).get());
  for (const Case& row : {Case{"Foo-Bold", 4}, Case{"Foo_Bold", 3}, Case{"Foo-Bold-2", 2}, Case{"Bar#2", 5},
                          Case{"Bar1", 5}, Case{"foo-bold", -1}, Case{"()", 6}}) {
    EXPECT_EQ(row.expected, FindIn(fonts.get(), row.name)) << row.name;
    const auto found = IndexedFontArray(fonts.get()).Find(ToCFString(row.name).get());
    EXPECT_EQ(row.expected, found ? *found : -1) << row.name;
  }
  EXPECT_FALSE(GlyphMarkSupport::DoesArrayContainFontWithPostScriptName(nullptr, CFSTR("A"), nullptr));
  EXPECT_FALSE(GlyphMarkSupport::DoesArrayContainFontWithPostScriptName(fonts.get(), nullptr, nullptr));
}

TEST(FontLookupTest, AddingStripsAndDropsDuplicates) {
  const auto fonts = MakeArray();
  struct Case {
    const char* name;
    bool allowDuplicates;
    bool added;
  };
  for (const Case& row :
       {Case{"Foo (Bold)", false, true}, Case{"FooBold", false, false}, Case{"Foo-Bold", false, false},
        Case{"Foo-Bold", true, true}, Case{"()", false, false}, Case{"\xE5\xB0\x8F", false, true},
        Case{"\xE5\xA1\x9A", false, false}}) {  // known: names without ASCII letters match each other
    EXPECT_EQ(row.added,
              GlyphMarkSupport::AddFontToArray(ToCFString(row.name).get(), fonts.get(), row.allowDuplicates))
        << row.name;
  }
  EXPECT_EQ((Names{"FooBold", "Foo-Bold", "\xE5\xB0\x8F"}), FontNamesOf(fonts.get()));
  EXPECT_FALSE(GlyphMarkSupport::AddFontToArray(nullptr, fonts.get(), false));
  EXPECT_FALSE(GlyphMarkSupport::AddFontToArray(CFSTR("A"), nullptr, false));
}

// The index must answer as the walks do through any mix of additions, renames and removals.
TEST(FontLookupTest, IndexAgreesWithTheWalks) {
  std::mt19937 random(20);
  const Names pieces = {"Foo", "Bar", "-", "#1", "#2", " ", "_", "-Bold", "1", "\xE5\xB0\x8F"};
  const auto makeName = [&] {
    std::string name;
    for (unsigned int i = random() % 4 + 1; i-- > 0;) name += pieces[random() % pieces.size()];
    return name;
  };
  for (int round = 0; round < 20; ++round) {
    const auto viaIndex = MakeArray();
    const auto viaWalks = MakeArray();
    IndexedFontArray indexed(viaIndex.get());
    for (int step = 0; step < 150; ++step) {
      const auto name = ToCFString(makeName());
      const bool allowDuplicates = random() % 4 == 0;
      if (random() % 2 == 0) {
        EXPECT_EQ(GlyphMarkSupport::AddFontToArray(name.get(), viaWalks.get(), allowDuplicates),
                  indexed.AddFont(name.get(), allowDuplicates));
      } else {
        const auto record = adoptCF(GlyphMarkSupport::CreateGlyphMarkDictionary(name.get()));
        for (unsigned int key = random() % 4; key-- > 0;) {
          XCFUtils::PutStringIntoDict(record.get(), GlyphMarkSupport::kAllGlyphMarkCFKeys[key + 1], "x");
        }
        GlyphMarkSupport::MergeGlyphmarkDictionaryIntoArray(viaWalks.get(), record.get());
        indexed.MergeRecord(record.get());
      }
    }
    EXPECT_EQ(FontNamesOf(viaWalks.get()), FontNamesOf(viaIndex.get()));
    for (int probe = 0; probe < 100; ++probe) {
      const std::string name = makeName();
      const auto found = indexed.Find(ToCFString(name).get());
      EXPECT_EQ(FindIn(viaWalks.get(), name), found ? *found : -1) << name;
    }
  }
}

TEST(FontLookupTest, RemovedEntriesAreNoLongerFoundAndLeaveAtTheEnd) {
  const auto fonts = MakeNamed({"Foo", "Foo", "Bar"});
  {
    IndexedFontArray indexed(fonts.get());
    indexed.Remove(0);
    EXPECT_EQ(1, *indexed.Find(CFSTR("Foo")));
    indexed.Remove(1);
    EXPECT_FALSE(indexed.Find(CFSTR("Foo")));
    EXPECT_TRUE(indexed.AddFont(CFSTR("Foo"), false));
  }
  EXPECT_EQ((Names{"Bar", "Foo"}), FontNamesOf(fonts.get()));
}

TEST(FontMergeTest, RecordWithMoreKeysTakesThePlace) {
  const auto fonts =
      MakeFontList({MakeFontRecord({{kGM_PostScriptNameKey, "Foo-Bold"}, {kGM_KindKey, "old"}})});
  GlyphMarkSupport::MergeGlyphmarkDictionaryIntoArray(
      fonts.get(), MakeFontRecord({{kGM_PostScriptNameKey, "Foo Bold"}, {kGM_KindKey, "new"}}).get());
  EXPECT_EQ("old", FontValue(FontRecord::At(fonts.get(), 0), kGM_KindKey));
  GlyphMarkSupport::MergeGlyphmarkDictionaryIntoArray(
      fonts.get(),
      MakeFontRecord({{kGM_PostScriptNameKey, "Foo Bold"}, {kGM_KindKey, "new"}, {kGM_VersionKey, "1"}})
          .get());
  GlyphMarkSupport::MergeGlyphmarkDictionaryIntoArray(
      fonts.get(), MakeFontRecord({{kGM_PostScriptNameKey, "Other"}}).get());
  EXPECT_EQ((Names{"Foo Bold", "Other"}), FontNamesOf(fonts.get()));
}

TEST(FontMergeTest, ArraysMergeByCompletenessAndConflict) {
  struct Case {
    const char* name;
    FontFields source;
    FontFields destination;
    std::string kind;
    std::string version;
    std::string family;
  };
  for (const Case& row :
       {Case{"adds what is missing",
             {{kGM_KindKey, "a"}, {kGM_VersionKey, "1"}},
             {{kGM_KindKey, "A"}, {kGM_FamilyKey, "F"}},
             "A",
             "1",
             "F"},
        Case{"conflict, more keys win whole",
             {{kGM_KindKey, "b"}, {kGM_VersionKey, "1"}},
             {{kGM_KindKey, "a"}},
             "b",
             "1",
             ""},
        Case{"conflict, as many keys", {{kGM_KindKey, "b"}}, {{kGM_KindKey, "a"}}, "a", "", ""},
        Case{
            "nothing new", {{kGM_KindKey, "a"}}, {{kGM_KindKey, "a"}, {kGM_FamilyKey, "F"}}, "a", "", "F"}}) {
    const auto source = MakeFontRecord(row.source);
    const auto destination = MakeFontRecord(row.destination);
    XCFUtils::PutStringIntoDict(source.get(), kGM_PostScriptNameKey, "Foo");
    XCFUtils::PutStringIntoDict(destination.get(), kGM_PostScriptNameKey, "Foo");
    const auto fonts = MakeFontList({destination});
    GlyphMarkSupport::MergeFontsIntoFontsArray(MakeFontList({source}).get(), fonts.get());
    ASSERT_EQ(1, CFArrayGetCount(fonts.get())) << row.name;
    const CFDictionaryRef result = FontRecord::At(fonts.get(), 0);
    EXPECT_EQ(row.kind, FontValue(result, kGM_KindKey)) << row.name;
    EXPECT_EQ(row.version, FontValue(result, kGM_VersionKey)) << row.name;
    EXPECT_EQ(row.family, FontValue(result, kGM_FamilyKey)) << row.name;
  }
}

TEST(FontMergeTest, ForeignElementsArePassedOverAndNothingIsLost) {
  const auto source = MakeNamed({"New", "New", "Old"});
  CFArrayInsertValueAtIndex(source.get(), 0, kCFBooleanTrue);
  CFArrayAppendValue(source.get(), MakeFontRecord({{kGM_KindKey, "nameless"}}).get());
  const auto fonts = MakeNamed({"Old"});
  CFArrayInsertValueAtIndex(fonts.get(), 0, CFSTR("no record"));
  GlyphMarkSupport::MergeFontsIntoFontsArray(source.get(), fonts.get());
  EXPECT_EQ((Names{"-", "Old", "New"}), FontNamesOf(fonts.get()));
  GlyphMarkSupport::MergeFontsIntoFontsArray(fonts.get(), fonts.get());
  EXPECT_EQ((Names{"-", "Old", "New"}), FontNamesOf(fonts.get()));
  GlyphMarkSupport::MergeFontsIntoFontsArray(nullptr, fonts.get());
  GlyphMarkSupport::MergeFontsIntoFontsArray(fonts.get(), nullptr);
}

TEST(AllFontsResolvedTest, CollectsEveryChoice) {
  const auto open = MakeFontRecord({{kGM_PostScriptNameKey, "Open"}});
  const auto resolved = MakeFontRecord({{kGM_PostScriptNameKey, "Asked"}});
  CFDictionarySetValue(resolved.get(), kGM_MatchedFontKey,
                       MakeFontRecord({{kGM_PostScriptNameKey, "Chosen"}}).get());
  const auto matched = MakeArray();
  EXPECT_TRUE(GlyphMarkSupport::AllFontsResolved(MakeFontList({}).get(), matched.get()));
  EXPECT_TRUE(GlyphMarkSupport::AllFontsResolved(MakeFontList({resolved}).get(), matched.get()));
  EXPECT_FALSE(GlyphMarkSupport::AllFontsResolved(MakeFontList({open, resolved}).get(), matched.get()));
  EXPECT_EQ((Names{"Chosen", "Chosen"}), FontNamesOf(matched.get()));
}

}  // namespace
