#include <gtest/gtest.h>

#include <limits>

#include "Identity/BestMatch.h"
#include "Identity/DecimalPrefix.h"
#include "Identity/GlyphMarkComparison.h"
#include "support/FakeClientLibrary.h"

namespace {

struct CompareCase {
  const char* name;
  FontFields font1;
  FontFields font2;
  int expected;
  FontFields request = {};
};

class BestMatchTest : public testing::Test {
 protected:
  static int Compare(CFDictionaryRef font1, CFDictionaryRef font2, CFDictionaryRef request = nullptr) {
    return static_cast<int>(
        PickBestMatchCallBack(font1, font2, const_cast<void*>(static_cast<const void*>(request))));
  }

  FakeClientLibrary library;
};

#define ACTIVE \
  { kGM_IsActiveKey, "1" }
#define SYSTEM \
  { kGM_IsSystemKey, "1" }
#define KIND(text) \
  { kGM_KindKey, text }
#define FOUNDRY(text) \
  { kGM_FoundryKey, text }
#define VERSION(text) \
  { kGM_VersionKey, text }

TEST_F(BestMatchTest, TestsInTheirOrder) {
  // A row that isn't symmetric by rule says so by its name.
  const CompareCase cases[] = {
      {"active beats inactive", {ACTIVE}, {{kGM_IsActiveKey, "0"}}, -1},
      {"only the text 1 is active", {{kGM_IsActiveKey, "true"}}, {}, 0},
      {"the user's active font beats the system's", {ACTIVE}, {ACTIVE, SYSTEM}, -1},
      {"two active system fonts are tied", {ACTIVE, SYSTEM}, {ACTIVE, SYSTEM}, 0},
      {"active beats the kind ranking", {ACTIVE, KIND("TrueType")}, {KIND("OpenType")}, -1},
      {"kind as requested", {KIND("TrueType")}, {KIND("OpenType - PS")}, -1, {KIND("truetype")}},
      {"kind requested by nobody's kind", {KIND("OpenType - PS")}, {KIND("TrueType")}, -1, {KIND("Bitmap")}},
      {"foundry as requested", {FOUNDRY("ADOBE")}, {FOUNDRY("Bitstream")}, -1, {FOUNDRY("adobe")}},
      {"requested kind before requested foundry",
       {KIND("TrueType")},
       {FOUNDRY("Acme")},
       -1,
       {KIND("TrueType"), FOUNDRY("Acme")}},
      {"requested foundry beats the kind ranking",
       {FOUNDRY("Acme"), KIND("TrueType")},
       {KIND("OpenType")},
       -1,
       {FOUNDRY("Acme")}},
      {"any OpenType over Postscript", {KIND("OpenType - PS")}, {KIND("PostScript")}, -1},
      {"Postscript over TrueType", {KIND("postscript")}, {KIND("TrueType")}, -1},
      {"two OpenType kinds are tied", {KIND("OpenType - PS")}, {KIND("OpenType - TT")}, 0},
      {"Multiple Master is not ranked", {KIND("PostScript - MM")}, {KIND("OpenType")}, 0},
      {"Adobe wins", {FOUNDRY("Adobe Systems")}, {FOUNDRY("Bitstream")}, -1},
      {"adobe is not Adobe", {FOUNDRY("adobe")}, {FOUNDRY("Bitstream")}, 0},
      {"Adobe beats the version", {FOUNDRY("Adobe")}, {VERSION("2.0")}, -1},
      {"a version beats none", {VERSION("0.1")}, {}, -1},
      {"greater version", {VERSION("2.0")}, {VERSION("1.5")}, -1},
      {"numbers by their value", {VERSION("10.0")}, {VERSION("9.0")}, -1},
      {"equal numbers are tied", {VERSION("1.50")}, {VERSION("1.5 beta")}, 0},
      {"text sorts by text", {VERSION("2.0")}, {VERSION("abc")}, -1},
      {"zero sorts by text", {VERSION("0.0")}, {VERSION("1.0")}, -1},
      {"infinity is text", {VERSION("2.0")}, {VERSION("inf")}, -1},
      {"temporary beats lasting", {{kGM_IsTempKey, "1"}}, {{kGM_IsTempKey, "0"}}, -1},
      {"silence on temporary takes no part", {{kGM_IsTempKey, "1"}}, {}, 0},
      {"vault beats outside", {{kGM_IsVaultKey, "1"}}, {{kGM_IsVaultKey, "0"}}, -1},
      {"temporary before vault",
       {{kGM_IsTempKey, "1"}, {kGM_IsVaultKey, "0"}},
       {{kGM_IsTempKey, "0"}, {kGM_IsVaultKey, "1"}},
       -1},
      {"nothing known", {}, {}, 0},
  };
  for (const CompareCase& row : cases) {
    const auto font1 = MakeFontRecord(row.font1);
    const auto font2 = MakeFontRecord(row.font2);
    const auto request = MakeFontRecord(row.request);
    EXPECT_EQ(row.expected, Compare(font1.get(), font2.get(), request.get())) << row.name;
    EXPECT_EQ(-row.expected, Compare(font2.get(), font1.get(), request.get())) << row.name << ", swapped";
  }
}

TEST_F(BestMatchTest, TheAgentKnowsBetterThanTheRecords) {
  const unsigned int idle = library.AddFont("Foo", 0);
  const unsigned int active = library.AddFont("Foo", 4);
  const auto font1 = MakeFontRecord({{kGM_DatabaseIDKey, std::to_string(idle)}, KIND("OpenType")});
  const auto font2 = MakeFontRecord({{kGM_DatabaseIDKey, std::to_string(active)}, KIND("TrueType")});
  EXPECT_EQ(1, Compare(font1.get(), font2.get()));
  EXPECT_EQ(-1, Compare(font2.get(), font1.get()));
  EXPECT_EQ(-1, Compare(font1.get(), MakeFontRecord({KIND("TrueType")}).get())) << "no ID, no question";
  EXPECT_EQ(2, library.CountCalls("GetFontIsActivated"));
}

TEST_F(BestMatchTest, ForeignValuesMatchNothing) {
  const auto odd = MakeDictionary();
  for (CFStringRef key : {kGM_IsActiveKey, kGM_KindKey, kGM_FoundryKey, kGM_VersionKey, kGM_IsTempKey}) {
    CFDictionarySetValue(odd.get(), key, kCFBooleanTrue);
  }
  const auto plain = MakeFontRecord({KIND("TrueType")});
  EXPECT_EQ(0, Compare(odd.get(), plain.get(), odd.get()));
  EXPECT_EQ(0, static_cast<int>(PickBestMatchCallBack(CFSTR("text"), plain.get(), nullptr)));
}

TEST_F(BestMatchTest, SortsWithoutAConsistentOrder) {
  const auto fonts = MakeArray();
  std::multiset<std::string> before;
  for (int i = 0; i < 300; ++i) {
    const char* versions[] = {"-1", "0.0", "1.0", "x", "2"};
    CFArrayAppendValue(fonts.get(), MakeFontRecord({VERSION(versions[i * 7 % 5]),
                                                    {kGM_PostScriptNameKey, std::to_string(i)},
                                                    {kGM_DatabaseIDKey, std::to_string(i + 1)}})
                                        .get());
    before.insert(std::to_string(i));
  }
  CFArraySortValues(fonts.get(), CFRangeMake(0, 300), PickBestMatchCallBack, nullptr);
  const std::vector<std::string> names = FontNamesOf(fonts.get());
  EXPECT_EQ(before, std::multiset<std::string>(names.begin(), names.end()));
  EXPECT_LE(library.CountCalls("GetFontIsActivated"), 300 * 9);
}

TEST(DecimalPrefixTest, ReadsPlainDecimalsOnly) {
  struct Case {
    const char* text;
    double expected;
  };
  for (const Case& row : {Case{"1.5", 1.5}, Case{" \t-2.25x", -2.25}, Case{"+3", 3}, Case{"1.2.3", 1.2},
                          Case{"1,5", 1}, Case{"0x10", 0}, Case{"inf", 0}, Case{"nan", 0}, Case{"2e3", 2},
                          Case{".5", 0.5}, Case{"", 0}, Case{"+-1", 0}, Case{" ", 0}}) {
    EXPECT_EQ(row.expected, ReadDecimalPrefix(row.text)) << row.text;
  }
  EXPECT_EQ(std::numeric_limits<double>::infinity(), ReadDecimalPrefix(std::string(5000, '9')));
  EXPECT_EQ(0.0, ReadDecimalPrefix("0." + std::string(5000, '0') + "1"));
}

TEST(GlyphMarkComparisonTest, ConflictsAndMerge) {
  struct Case {
    const char* name;
    FontFields d1;
    FontFields d2;
    int common;
    int conflicts;
    int compared;
  };
  for (const Case& row :
       {Case{"case doesn't count", {KIND("truetype"), VERSION("1")}, {KIND("TrueType")}, 1, 0, 1},
        Case{"length counts", {KIND("TrueType")}, {KIND("TrueType "), VERSION("1")}, 1, 1, -1},
        Case{"same count, other values", {KIND("A"), VERSION("1")}, {KIND("B"), VERSION("1")}, 2, 1, 0},
        Case{"empty", {}, {KIND("B")}, 0, 0, -1}}) {
    const auto d1 = MakeFontRecord(row.d1);
    const auto d2 = MakeFontRecord(row.d2);
    int common = 9;
    int conflicts = 9;
    CountConflicts(d1.get(), d2.get(), common, conflicts);
    EXPECT_EQ(row.common, common) << row.name;
    EXPECT_EQ(row.conflicts, conflicts) << row.name;
    EXPECT_EQ(row.compared, CompareGlyphMarkInfo(d1.get(), d2.get())) << row.name;
  }
  const auto record = MakeFontRecord({KIND("A")});
  EXPECT_EQ(1, CompareGlyphMarkInfo(record.get(), nullptr));
  EXPECT_EQ(-1, CompareGlyphMarkInfo(nullptr, record.get()));
  EXPECT_EQ(0, CompareGlyphMarkInfo(nullptr, nullptr));
  EXPECT_EQ(nullptr, CreateMergedDictionary(record.get(), record.get()));
  const auto merged =
      adoptCF(CreateMergedDictionary(record.get(), MakeFontRecord({KIND("B"), VERSION("1")}).get()));
  EXPECT_EQ("A", FontValue(merged.get(), kGM_KindKey));
  EXPECT_EQ("1", FontValue(merged.get(), kGM_VersionKey));
}

}  // namespace
