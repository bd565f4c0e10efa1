#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "Identity/BestMatch.h"
#include "Identity/DecimalPrefix.h"
#include "Identity/GlyphMarkComparison.h"
#include "support/FakeClientLibrary.h"

namespace {

struct CompareCase {
  const char* name;
  const char* font1;
  const char* font2;
  int expected;
  const char* request = "";
};

int Compare(CFDictionaryRef font1, CFDictionaryRef font2, CFDictionaryRef request = nullptr) {
  return static_cast<int>(
      PickBestMatchCallBack(font1, font2, const_cast<void*>(static_cast<const void*>(request))));
}

TEST(BestMatchTest, TestsInTheirOrder) {
  const CompareCase cases[] = {
      {"active beats inactive", "IsActive=1", "IsActive=0", -1},
      {"only the text 1 is active", "IsActive=true", "", 0},
      {"the user's active font beats the system's", "IsActive=1", "IsActive=1|IsSystem=1", -1},
      {"two active system fonts are tied", "IsActive=1|IsSystem=1", "IsActive=1|IsSystem=1", 0},
      {"active beats the kind ranking", "IsActive=1|FontKind=TrueType", "FontKind=OpenType", -1},
      {"kind as requested", "FontKind=TrueType", "FontKind=OpenType - PS", -1, "FontKind=truetype"},
      {"kind requested by nobody", "FontKind=OpenType - PS", "FontKind=TrueType", -1, "FontKind=Bitmap"},
      {"foundry as requested", "Foundry=ADOBE", "Foundry=Bitstream", -1, "Foundry=adobe"},
      {"requested kind first", "FontKind=TrueType", "Foundry=A", -1, "FontKind=TrueType|Foundry=A"},
      {"requested foundry before ranking", "Foundry=A|FontKind=TrueType", "FontKind=OpenType", -1,
       "Foundry=A"},
      {"any OpenType over Postscript", "FontKind=OpenType - PS", "FontKind=PostScript", -1},
      {"Postscript over TrueType", "FontKind=postscript", "FontKind=TrueType", -1},
      {"ranking before Adobe", "FontKind=OpenType", "FontKind=TrueType|Foundry=Adobe", -1},
      {"two OpenType kinds are tied", "FontKind=OpenType - PS", "FontKind=OpenType - TT", 0},
      {"Multiple Master is not ranked", "FontKind=PostScript - MM", "FontKind=OpenType", 0},
      {"Adobe wins", "Foundry=Adobe Systems", "Foundry=Bitstream", -1},
      {"adobe is not Adobe", "Foundry=adobe", "Foundry=Bitstream", 0},
      {"Adobe beats the version", "Foundry=Adobe", "Version=2.0", -1},
      {"a version beats none", "Version=0.1", "", -1},
      {"numbers by their value", "Version=10.0", "Version=9.0", -1},
      {"equal numbers are tied", "Version=1.50", "Version=1.5 beta", 0},
      {"text sorts by text", "Version=2.0", "Version=abc", -1},
      {"zero sorts by text", "Version=0.0", "Version=1.0", -1},
      {"infinity is text", "Version=2.0", "Version=inf", -1},
      {"version before temporary", "Version=2|IsTemp=0", "Version=1|IsTemp=1", -1},
      {"silence on temporary takes no part", "IsTemp=1", "", 0},
      {"temporary before vault", "IsTemp=1|IsVault=0", "IsTemp=0|IsVault=1", -1},
      {"vault beats outside", "IsVault=1", "IsVault=0", -1},
  };
  for (const CompareCase& row : cases) {
    const auto font1 = ParseFontRecord(row.font1);
    const auto font2 = ParseFontRecord(row.font2);
    const auto request = ParseFontRecord(row.request);
    EXPECT_EQ(row.expected, Compare(font1.get(), font2.get(), request.get())) << row.name;
    EXPECT_EQ(-row.expected, Compare(font2.get(), font1.get(), request.get())) << row.name << ", swapped";
  }
}

TEST(BestMatchTest, NamesTheTestThatDecided) {
  using Test = EBestMatchTest;
  struct Case {
    const char* font1;
    const char* font2;
    Test expected;
  };
  const Case cases[] = {{"IsActive=1", "", Test::kActiveState},
                        {"FontKind=TrueType", "FontKind=OpenType", Test::kRequestedKind},
                        {"Foundry=Acme", "Foundry=Adobe", Test::kRequestedFoundry},
                        {"FontKind=OpenType", "FontKind=Postscript", Test::kKindRanking},
                        {"Foundry=Adobe", "", Test::kAdobeFoundry},
                        {"Version=2", "Version=1", Test::kVersion},
                        {"IsTemp=1", "IsTemp=0", Test::kTemporary},
                        {"IsVault=1", "IsVault=0", Test::kVault},
                        {"Family=A", "Family=B", Test::kNone}};
  const auto request = ParseFontRecord("FontKind=TrueType|Foundry=acme");
  for (const Case& row : cases) {
    const auto font1 = ParseFontRecord(row.font1);
    const auto font2 = ParseFontRecord(row.font2);
    EXPECT_EQ(row.expected, DecideBestMatch(font1.get(), font2.get(), request.get()).test) << row.font1;
    EXPECT_EQ(row.expected, DecideBestMatch(font2.get(), font1.get(), request.get()).test) << row.font1;
  }
}

TEST(BestMatchTest, TheAgentKnowsBetterThanTheRecords) {
  FakeClientLibrary library;
  const unsigned int idle = library.AddFont("Foo", 0);
  const unsigned int active = library.AddFont("Foo", 4);
  const auto font1 = ParseFontRecord("FontKind=OpenType|DatabaseID=" + std::to_string(idle));
  const auto font2 = ParseFontRecord("FontKind=TrueType|DatabaseID=" + std::to_string(active));
  EXPECT_EQ(1, Compare(font1.get(), font2.get()));
  EXPECT_EQ(EBestMatchTest::kLiveState, DecideBestMatch(font2.get(), font1.get(), nullptr).test);
  EXPECT_EQ(-1, Compare(font1.get(), ParseFontRecord("FontKind=TrueType").get())) << "no ID, no question";
  EXPECT_EQ(2, library.CountCalls("GetFontIsActivated"));
}

TEST(BestMatchTest, ForeignValuesMatchNothing) {
  const auto odd = MakeDictionary();
  for (CFStringRef key : {kGM_IsActiveKey, kGM_KindKey, kGM_FoundryKey, kGM_VersionKey, kGM_IsTempKey}) {
    CFDictionarySetValue(odd.get(), key, kCFBooleanTrue);
  }
  const auto plain = ParseFontRecord("FontKind=TrueType");
  EXPECT_EQ(0, Compare(odd.get(), plain.get(), odd.get()));
  EXPECT_EQ(0, static_cast<int>(PickBestMatchCallBack(CFSTR("text"), plain.get(), nullptr)));
}

TEST(DecimalPrefixTest, ReadsPlainDecimalsOnly) {
  const std::vector<std::pair<const char*, double>> cases = {
      {"1.5", 1.5}, {" \t-2.25x", -2.25}, {"+3", 3},  {"1.2.3", 1.2}, {"1,5", 1}, {"0x10", 0}, {"inf", 0},
      {"nan", 0},   {"2e3", 2},           {".5", .5}, {"", 0},        {"+-1", 0}, {" ", 0}};
  for (const auto& [text, expected] : cases) EXPECT_EQ(expected, ReadDecimalPrefix(text)) << text;
  EXPECT_EQ(std::numeric_limits<double>::infinity(), ReadDecimalPrefix(std::string(5000, '9')));
  EXPECT_EQ(0.0, ReadDecimalPrefix("0." + std::string(5000, '0') + "1"));
}

TEST(GlyphMarkComparisonTest, ConflictsAndCompleteness) {
  struct Case {
    const char* name;
    const char* d1;
    const char* d2;
    int common;
    int conflicts;
    int compared;
  };
  for (const Case& row :
       {Case{"case doesn't count", "FontKind=truetype|Version=1", "FontKind=TrueType", 1, 0, 1},
        Case{"length counts", "FontKind=TrueType", "FontKind=TrueType |Version=1", 1, 1, -1},
        Case{"same count, other values", "FontKind=A|Version=1", "FontKind=B|Version=1", 2, 1, 0},
        Case{"empty", "", "FontKind=B", 0, 0, -1}}) {
    const auto d1 = ParseFontRecord(row.d1);
    const auto d2 = ParseFontRecord(row.d2);
    int common = 9;
    int conflicts = 9;
    CountConflicts(d1.get(), d2.get(), common, conflicts);
    EXPECT_EQ(row.common, common) << row.name;
    EXPECT_EQ(row.conflicts, conflicts) << row.name;
    EXPECT_EQ(row.compared, CompareGlyphMarkInfo(d1.get(), d2.get())) << row.name;
  }
  const auto record = ParseFontRecord("FontKind=A");
  EXPECT_EQ(1, CompareGlyphMarkInfo(record.get(), nullptr));
  EXPECT_EQ(-1, CompareGlyphMarkInfo(nullptr, record.get()));
  EXPECT_EQ(nullptr, CreateMergedDictionary(record.get(), record.get()));
}

}  // namespace
