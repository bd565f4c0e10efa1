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
  struct Case {
    const char* name;
    bool allowDuplicates;
    bool added;
  };
  const auto fonts = MakeArray();
  const auto indexedFonts = MakeArray();
  IndexedFontArray indexed(indexedFonts.get());
  for (const Case& row :
       {Case{"(F)/[o]{o} Bold", false, true}, Case{"FooBold", false, false}, Case{"Foo-Bold", false, false},
        Case{"Foo-Bold", true, true}, Case{"()[]{} /", true, false}, Case{"", true, false},
        Case{"<%>\xE5\xB0\x8F", false, true},
        Case{"\xE5\xA1\x9A", false, false}}) {  // known: names without ASCII letters match each other
    const auto name = ToCFString(row.name);
    EXPECT_EQ(row.added, GlyphMarkSupport::AddFontToArray(name.get(), fonts.get(), row.allowDuplicates))
        << row.name;
    EXPECT_EQ(row.added, indexed.AddFont(name.get(), row.allowDuplicates)) << row.name;
  }
  EXPECT_EQ((Names{"FooBold", "Foo-Bold", "<%>\xE5\xB0\x8F"}), FontNamesOf(fonts.get()));
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

TEST(FontMergeTest, CompletenessAndConflictDecide) {
  // Records as their PostScript name and more fields; two of them with "&" between.
  const struct {
    const char* name;
    bool asArrays;
    const char *source, *destination, *expected;
  } kCases[] = {
      {"record, as many keys", false, "A B|Version=2", "A-B|Version=1", "A-B|Version=1"},
      {"record, more keys", false, "A B|Version=2", "A-B", "A B|Version=2"},
      {"record, unknown", false, "B", "A", "A&B"},
      {"adds what is missing", true, "A|FontKind=x|Version=1", "A|FontKind=X|Family=F",
       "A|FontKind=X|Family=F|Version=1"},
      {"conflict, more keys win whole", true, "A|FontKind=y|Version=1", "A|FontKind=x",
       "A|FontKind=y|Version=1"},
      {"conflict, as many keys", true, "A|FontKind=y", "A|FontKind=x", "A|FontKind=x"},
      {"another spelling is a conflict", true, "A-B|Version=1", "A B", "A-B|Version=1"},
      {"nothing new", true, "A", "A|Family=F", "A|Family=F"},
  };
  const auto list = [](std::string_view text) {
    std::vector<RetainPtr<CFMutableDictionaryRef>> records;
    while (!text.empty()) {
      const std::string_view record = text.substr(0, text.find('&'));
      records.push_back(ParseFontRecord("PostScriptName=" + std::string(record)));
      text.remove_prefix(std::min(record.size() + 1, text.size()));
    }
    return MakeFontList(records);
  };
  for (const auto& row : kCases) {
    const auto fonts = list(row.destination);
    const auto source = list(row.source);
    if (row.asArrays) {
      GlyphMarkSupport::MergeFontsIntoFontsArray(source.get(), fonts.get());
    } else {
      GlyphMarkSupport::MergeGlyphmarkDictionaryIntoArray(fonts.get(), FontRecord::At(source.get(), 0));
    }
    EXPECT_TRUE(CFEqual(list(row.expected).get(), fonts.get())) << row.name;
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
