#include <gtest/gtest.h>

#include "Identity/FontDataPreviouslyGottenFromDatabase.h"
#include "Identity/GlyphMarkSupport.h"
#include "support/FakeClientLibrary.h"
#include "support/FakeFontManager.h"

namespace {

using Names = std::vector<std::string>;
using IDs = std::vector<unsigned int>;

struct LibraryFont {
  const char* record;
  int16_t state = 1;
};

// A library as a studio has it; the IDs are the rows' numbers from 1 on.
const LibraryFont kStudio[] = {
    {"PostScriptName=Minion-Regular|FontKind=Postscript|Foundry=Adobe|Version=1.0"},     // 1 Type 1
    {"PostScriptName=Minion-Regular|FontKind=OpenType - PS|Foundry=Adobe|Version=2.0"},  // 2 two versions
    {"PostScriptName=Minion-Regular|FontKind=OpenType - PS|Foundry=Adobe|Version=3.5"},  // 3
    {"PostScriptName=Helvetica|FontKind=TrueType|Foundry=Apple|Version=5.0|IsSystem=1",
     2},                                                                                  // 4 two foundries
    {"PostScriptName=Helvetica|FontKind=OpenType - TT|Foundry=Linotype|Version=1.0"},     // 5
    {"PostScriptName=TektonMM|FontKind=PostScript - MM|Foundry=Adobe|Version=1.0"},       // 6
    {"PostScriptName=\xE5\xB0\x8F\xE5\xA1\x9A|FontKind=OpenType - PS|Foundry=Kozuka"},    // 7
    {"PostScriptName=OldStyle|FontKind=TrueType|Foundry=Acme|Family=Old Style"},          // 8
    {"PostScriptName=Optima|FontKind=OpenType|IsSystem=1", 2},                            // 9 system copy
    {"PostScriptName=Optima|FontKind=TrueType|IsSystem=0", 3},                            // 10 the user's
    {"PostScriptName=GillSans|FontKind=TrueType|IsVault=0"},                              // 11
    {"PostScriptName=GillSans|FontKind=TrueType|IsVault=1"},                              // 12 vault copy
    {"PostScriptName=\xE6\x98\x8E\xE6\x9C\x9D|FontKind=OpenType - PS|Foundry=Morisawa"},  // 13
};

class GlyphMarkLookupTest : public testing::Test {
 protected:
  void AddStudio() {
    for (const LibraryFont& font : kStudio) manager.AddFont(ParseFontRecord(font.record), font.state);
  }

  int Lookup(const std::string& record, TypeOfFontName type = TypeOfFontName::kPostScriptName) {
    CFArrayRef data = MakeArray().leakRef();
    const int status =
        manager.GetGlyphMarkData(ParseFontRecord(record).get(), type, excludedRemote, -2, &data, &foundName);
    result = adoptCF(data);
    return status;
  }
  int LookupName(const std::string& name) { return Lookup("PostScriptName=" + name); }

  int Append(const RetainPtr<CFMutableArrayRef>& fonts, bool excludeInactive, bool allInfo,
             bool families = false) {
    return GlyphMarkSupport::AppendGlyphMarkDataToFonts(fonts.get(), -2, excludeInactive, allInfo, families);
  }

  static RetainPtr<CFMutableDictionaryRef> Named(const std::string& name) {
    return ParseFontRecord("PostScriptName=" + name);
  }

  FakeFontManager manager;
  FakeClientLibrary library;
  RetainPtr<CFArrayRef> result;
  bool excludedRemote = false;
  FontNameForm foundName;
};

TEST_F(GlyphMarkLookupTest, BestCandidateFirst) {
  AddStudio();
  const std::vector<std::pair<const char*, IDs>> cases = {
      {"PostScriptName=Minion-Regular", {3, 2, 1}},
      {"PostScriptName=Minion-Regular|FontKind=Postscript", {1, 3, 2}},
      {"PostScriptName=Helvetica|Foundry=Linotype", {4, 5}},  // active before all
      {"PostScriptName=Optima", {10, 9}},
      {"PostScriptName=GillSans", {12, 11}},
      {"PostScriptName=\xE5\xB0\x8F\xE5\xA1\x9A", {7}},
      {"PostScriptName=Garamond", {}}};
  for (const auto& [request, expected] : cases) {
    EXPECT_EQ(0, Lookup(request)) << request;
    EXPECT_EQ(expected, FontIDsOf(result.get())) << request;
  }
}

TEST_F(GlyphMarkLookupTest, ResultTellsTheStateAsItIs) {
  const char* active[] = {"0", "0", "1", "1"};
  const char* temporary[] = {"0", "0", "0", "1"};
  for (int16_t state = 0; state < 4; ++state) {
    const std::string name = "F" + std::to_string(state);
    manager.AddFont(Named(name), state);
    EXPECT_EQ(0, LookupName(name));
    const CFDictionaryRef font = FontRecord::At(result.get(), 0);
    EXPECT_EQ(active[state], FontValue(font, kGM_IsActiveKey));
    EXPECT_EQ(temporary[state], FontValue(font, kGM_IsTempKey));
    EXPECT_EQ(std::to_string(state), FontValue(font, kGM_ActivationStateKey));
  }
}

TEST_F(GlyphMarkLookupTest, FormsOfTheNameAreTriedInOrder) {
  AddStudio();
  struct Case {
    const char* name;
    IDs expected;
    Names lookups;
  };
  const Case cases[] = {
      {"ABCDEF+OldStyle", {8}, {"ps:ABCDEF+OldStyle", "ps:ABCDEFOldStyle", "ps:OldStyle"}},
      {"Old-Style-X#12", {8}, {"ps:Old-Style-X#12", "ps:OldStyle"}},
      {"Old-Style_Q",
       {8},
       {"ps:Old-Style_Q", "ps:OldStyleQ", "ps:Old-Style", "family:Old-Style", "family:Old Style"}},
      {"TektonMM_24_RG",
       {6},
       {"ps:TektonMM_24_RG", "ps:TektonMM24RG", "ps:TektonMM_24", "family:TektonMM_24", "family:TektonMM_24",
        "ps:TektonMM"}},
      {"\xE6\x98\x8E(V)",
       {},
       {"ps:\xE6\x98\x8E(V)", "ps:V", "ps:\xE6\x98\x8E(V", "family:\xE6\x98\x8E(V", "family:\xE6\x98\x8E(V",
        "ps:\xE6\x98\x8E", "family:\xE6\x98\x8E", "family:\xE6\x98\x8E"}},
      {"\xE6\x98\x8E", {}, {"ps:\xE6\x98\x8E"}},
      {"--", {}, {"ps:--", "ps:-", "family:-", "family: "}}};
  for (const Case& row : cases) {
    manager.lookups.clear();
    foundName = {};
    LookupName(row.name);
    EXPECT_EQ(row.expected, FontIDsOf(result.get())) << row.name;
    EXPECT_EQ(row.lookups, manager.lookups) << row.name;
    const bool byFamily = foundName.type == TypeOfFontName::kFamilyName;
    const std::string found = (byFamily ? "family:" : "ps:") + foundName.text;
    EXPECT_EQ(row.expected.empty() ? "ps:" : row.lookups.back(), found) << row.name;
  }
  EXPECT_EQ(0, Lookup("Family=Old Style", TypeOfFontName::kFamilyName));
  EXPECT_EQ((IDs{8}), FontIDsOf(result.get()));
}

TEST_F(GlyphMarkLookupTest, UnusableRequestsAskNobody) {
  AddStudio();
  CFArrayRef none = nullptr;
  EXPECT_EQ(-1, manager.GetGlyphMarkData(Named("OldStyle").get(), TypeOfFontName::kPostScriptName,
                                         excludedRemote, 0, &none));
  EXPECT_EQ(-1, Lookup(""));
  EXPECT_EQ(-1, LookupName(""));
  EXPECT_EQ(-1, LookupName(std::string(128, 'x')));
  EXPECT_EQ(-1, LookupName(std::string("Old\0Style", 9)));
  EXPECT_EQ(-1, Lookup("PostScriptName=OldStyle", static_cast<TypeOfFontName>(2)));
  EXPECT_EQ(-50, manager.GetGlyphMarkDataForFontName(nullptr, TypeOfFontName::kPostScriptName, excludedRemote,
                                                     0, &none));
  EXPECT_EQ(-50, manager.GetGlyphMarkDataForFontName("A", TypeOfFontName::kPostScriptName, excludedRemote, 0,
                                                     nullptr));
  EXPECT_EQ(Names{}, manager.lookups);
  EXPECT_EQ(0, LookupName(std::string(127, 'x')));
}

TEST_F(GlyphMarkLookupTest, DamagedCandidatesAreSkipped) {
  for (int i = 10; i > 0; --i)
    manager.AddFont(ParseFontRecord("PostScriptName=Foo|Version=" + std::to_string(i)));
  const std::string head = "<plist version=\"1.0\"><array>";
  const std::string tail = "</array></plist>";
  manager.namedFontStatus[1] = -1;
  manager.glyphMarkStatus[2] = 5;
  manager.glyphMarkText = {
      {3, ""},
      {4, "not a list"},
      {5, head + "<string>x</string>" + tail},
      {6, "<plist version=\"1.0\"><dict/></plist>"},
      {7, head + "<dict><key>PostScriptName</key><integer>5</integer></dict><true/>" + tail},
      {8, head + "<dict><key>PostScriptName</key><string>\xFF</string></dict>" + tail},
      {9, std::string(70'000, 'x')}};
  EXPECT_EQ(0, LookupName("Foo"));
  EXPECT_EQ((IDs{10, 7}), FontIDsOf(result.get()));
  EXPECT_EQ(1, manager.endedWalks);
}

TEST_F(GlyphMarkLookupTest, AgentGoneKeepsWhatWasFoundAndEndsTheSearch) {
  for (int i = 0; i < 3; ++i) manager.AddFont(Named("Foo"));
  manager.namedFontStatus[2] = kErrorHornbeamNotRunning;
  EXPECT_EQ(kErrorHornbeamNotRunning, LookupName("Foo"));
  EXPECT_EQ((IDs{1}), FontIDsOf(result.get()));
  manager.namedFontStatus.clear();
  manager.glyphMarkStatus[2] = kErrorHornbeamNotRunning;
  EXPECT_EQ(kErrorHornbeamNotRunning, LookupName("Foo"));
  EXPECT_EQ((IDs{1}), FontIDsOf(result.get()));

  manager.lookups.clear();
  manager.countStatus["A-B-C"] = kErrorHornbeamNotRunning;
  EXPECT_EQ(kErrorHornbeamNotRunning, LookupName("A-B-C-D-E"));
  EXPECT_EQ("ps:A-B-C", manager.lookups.back()) << "no further lookup at a dead agent";
  manager.countStatus = {{"Lost", 7}};
  EXPECT_EQ(7, LookupName("Lost"));
  EXPECT_EQ("ps:Lost", manager.lookups.back());
}

TEST_F(GlyphMarkLookupTest, DisabledRemoteFontsAreLeftOutAndReported) {
  manager.AddFont({{kGM_PostScriptNameKey, "Foo"}, {kGM_WorkgroupTypeKey, "8"}});
  manager.AddFont({{kGM_PostScriptNameKey, "Foo"}, {kGM_WorkgroupTypeKey, "3"}});
  LookupName("Foo");
  EXPECT_FALSE(excludedRemote);
  manager.disabledWorkgroupType = 8;
  LookupName("Foo");
  EXPECT_TRUE(excludedRemote);
  EXPECT_EQ((IDs{2}), FontIDsOf(result.get()));
}

TEST_F(GlyphMarkLookupTest, FillingGivesTrueNamesAndKeepsTheUnknown) {
  AddStudio();
  manager.glyphMarkText[8] = "<plist version=\"1.0\"><array><dict/></array></plist>";
  const auto fonts = MakeFontList({Named("ABC+GillSans"), Named("Nobody"), Named("GillSans"),
                                   Named("Gill_Sans"), Named("OldStyle"), Named("Optima")});
  CFArrayInsertValueAtIndex(fonts.get(), 0, CFSTR("no record"));
  const auto marker = MakeDictionary();
  CFDictionarySetValue(marker.get(), kGM_EmbeddedFonts, MakeArray().get());
  CFArrayAppendValue(fonts.get(), marker.get());
  EXPECT_EQ(0, Append(fonts, false, true));
  EXPECT_EQ((Names{"-", "Nobody", "GillSans", "OldStyle", "Optima", "-"}), FontNamesOf(fonts.get()));
  EXPECT_EQ((IDs{0, 0, 12, 0, 10, 0}), FontIDsOf(fonts.get()));
  EXPECT_EQ(0, Append(fonts, false, false));
  EXPECT_EQ((IDs{0, 0, 0, 0, 0, 0}), FontIDsOf(fonts.get())) << "no slug stores an ID";
}

TEST_F(GlyphMarkLookupTest, InactiveFontsGoWhenAskedTo) {
  AddStudio();
  const auto fonts = MakeFontList({Named("Minion-Regular"), Named("Helvetica"), Named("Nobody")});
  CFArrayAppendValue(fonts.get(), CFSTR("no record"));
  EXPECT_EQ(0, Append(fonts, true, false));
  EXPECT_EQ((Names{"Helvetica", "-"}), FontNamesOf(fonts.get()));
}

TEST_F(GlyphMarkLookupTest, FamilySearchWhereTheNameFindsNothing) {
  manager.AddFont(ParseFontRecord("PostScriptName=Foo-Real|Family=Foo"), 2);
  manager.AddFont(ParseFontRecord("PostScriptName=Foo-Also|Family=Foo"), 3);
  const auto fonts = MakeFontList({ParseFontRecord("PostScriptName=Bar|Family=Foo")});
  EXPECT_EQ(0, Append(fonts, true, true, true));
  EXPECT_EQ((Names{"Foo-Real", "Foo-Also"}), FontNamesOf(fonts.get()));
  const auto guessed = Named("Foo=Bold-It");
  Append(MakeFontList({guessed}), true, true, true);
  EXPECT_EQ("Foo=Bold", FontValue(guessed.get(), kGM_FamilyKey));
  const auto unasked = Named("Bar");
  Append(MakeFontList({unasked}), false, true, true);
  EXPECT_EQ("", FontValue(unasked.get(), kGM_FamilyKey)) << "only when inactive fonts are left out";
}

TEST_F(GlyphMarkLookupTest, FillingReportsAndStopsAsTold) {
  AddStudio();
  const auto fonts = MakeFontList({Named("Helvetica"), Named("Gone"), Named("OldStyle")});
  manager.countStatus["Gone"] = kErrorHornbeamNotRunning;
  EXPECT_EQ(kErrorHornbeamNotRunning, Append(fonts, false, true));
  EXPECT_EQ((Names{"ps:OldStyle", "ps:Gone"}), manager.lookups);
  manager.lookups.clear();
  EXPECT_EQ(kErrorHornbeamNotRunning, Append(MakeFontList({Named("Gone")}), true, true, true));
  EXPECT_EQ((Names{"ps:Gone", "family:Gone"}), manager.lookups);
  manager.countStatus["Gone"] = 7;
  EXPECT_EQ(0, Append(fonts, false, true)) << "the code of the last lookup, which is that of the first entry";
  EXPECT_EQ(-50, GlyphMarkSupport::AppendGlyphMarkDataToFonts(nullptr, -2, false, true, false));
  manager.connected = false;
  manager.lookups.clear();
  EXPECT_EQ(kErrorHornbeamNotRunning, Append(fonts, true, false));
  EXPECT_EQ(3, CFArrayGetCount(fonts.get()));
  EXPECT_EQ(Names{}, manager.lookups);
}

TEST_F(GlyphMarkLookupTest, CachedActiveFontCostsNoLookup) {
  AddStudio();
  const auto cached = ParseFontRecord("PostScriptName=Helvetica|ActivationStatus=2|DatabaseID=4");
  auto& entries = FontDataPreviouslyGottenFromDatabase::EntriesForTesting();
  entries[4] = {.fontInfo = cached.get()};
  const auto fonts = MakeFontList({Named("Helvetica")});
  EXPECT_EQ(0, Append(fonts, true, true));
  EXPECT_EQ(Names{}, manager.lookups);
  EXPECT_EQ((IDs{4}), FontIDsOf(fonts.get()));
  entries.clear();
}

}  // namespace
