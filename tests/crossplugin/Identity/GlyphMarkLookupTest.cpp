#include <gtest/gtest.h>

#include "Identity/FontDataPreviouslyGottenFromDatabase.h"
#include "Identity/GlyphMarkSupport.h"
#include "support/FakeClientLibrary.h"
#include "support/FakeFontManager.h"

namespace {

using Names = std::vector<std::string>;
using IDs = std::vector<unsigned int>;

// A small library as a studio has it: two versions and two foundries of one name, Type 1 beside OpenType, a
// system copy, a Multiple Master base and a Japanese name.
class GlyphMarkLookupTest : public testing::Test {
 protected:
  void AddFont(const std::string& name, const std::string& kind, const std::string& foundry,
               const std::string& version, int16_t state = 1, const std::string& family = "") {
    manager.AddFont({{kGM_PostScriptNameKey, name},
                     {kGM_KindKey, kind},
                     {kGM_FoundryKey, foundry},
                     {kGM_VersionKey, version},
                     {kGM_FamilyKey, family}},
                    state);
  }
  void AddStudio() {
    AddFont("Minion-Regular", "Postscript", "Adobe", "1.0");                // 1
    AddFont("Minion-Regular", "OpenType - PS", "Adobe", "2.0");             // 2
    AddFont("Minion-Regular", "OpenType - PS", "Adobe", "3.5");             // 3
    AddFont("Helvetica", "TrueType", "Apple", "5.0", 2);                    // 4
    AddFont("Helvetica", "OpenType - TT", "Linotype", "1.0");               // 5
    AddFont("TektonMM", "PostScript - MM", "Adobe", "1.0");                 // 6
    AddFont("\xE5\xB0\x8F\xE5\xA1\x9A", "OpenType - PS", "Kozuka", "6.0");  // 7
    AddFont("OldStyle", "TrueType", "Acme", "1.0", 1, "Old Style");         // 8
  }

  int Lookup(FontFields fields, TypeOfFontName type = TypeOfFontName::kPostScriptName) {
    CFArrayRef data = MakeArray().leakRef();
    const int status =
        manager.GetGlyphMarkData(MakeFontRecord(fields).get(), type, excludedRemote, -2, &data);
    result = adoptCF(data);
    return status;
  }
  int LookupName(const std::string& name) { return Lookup({{kGM_PostScriptNameKey, name}}); }

  int Append(const RetainPtr<CFMutableArrayRef>& fonts, bool excludeInactive, bool allInfo,
             bool families = false) {
    return GlyphMarkSupport::AppendGlyphMarkDataToFonts(fonts.get(), -2, excludeInactive, allInfo, families);
  }

  static RetainPtr<CFMutableDictionaryRef> Named(const std::string& name) {
    return MakeFontRecord({{kGM_PostScriptNameKey, name}});
  }

  FakeFontManager manager;
  FakeClientLibrary library;
  RetainPtr<CFArrayRef> result;
  bool excludedRemote = false;
};

TEST_F(GlyphMarkLookupTest, BestCandidateFirst) {
  AddStudio();
  struct Case {
    const char* name;
    FontFields request;
    IDs expected;
  };
  for (const Case& row : {Case{"newest OpenType", {{kGM_PostScriptNameKey, "Minion-Regular"}}, {3, 2, 1}},
                          Case{"kind as requested",
                               {{kGM_PostScriptNameKey, "Minion-Regular"}, {kGM_KindKey, "Postscript"}},
                               {1, 3, 2}},
                          Case{"active before all",
                               {{kGM_PostScriptNameKey, "Helvetica"}, {kGM_FoundryKey, "Linotype"}},
                               {4, 5}},
                          Case{"one candidate", {{kGM_PostScriptNameKey, "\xE5\xB0\x8F\xE5\xA1\x9A"}}, {7}},
                          Case{"unknown", {{kGM_PostScriptNameKey, "Garamond"}}, {}}}) {
    EXPECT_EQ(0, Lookup(row.request)) << row.name;
    EXPECT_EQ(row.expected, FontIDsOf(result.get())) << row.name;
  }
}

TEST_F(GlyphMarkLookupTest, ResultTellsTheStateAsItIs) {
  for (int16_t state : {0, 1, 2, 3}) AddFont("F" + std::to_string(state), "TrueType", "A", "1", state);
  const char* active[] = {"0", "0", "1", "1"};
  const char* temporary[] = {"0", "0", "0", "1"};
  for (int state = 0; state < 4; ++state) {
    EXPECT_EQ(0, LookupName("F" + std::to_string(state)));
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
  for (const Case& row :
       {Case{"ABCDEF+OldStyle", {8}, {"ps:ABCDEF+OldStyle", "ps:ABCDEFOldStyle", "ps:OldStyle"}},
        Case{"Old_Style#12", {8}, {"ps:Old_Style#12", "ps:OldStyle"}},
        Case{"Old-Style-Bold", {8}, {"ps:Old-Style-Bold", "ps:OldStyle"}},
        Case{"Old-Style-X(Y)", {8}, {"ps:Old-Style-X(Y)", "ps:OldStyle"}},
        Case{"ABC+Old-Style#1x",
             {},
             {"ps:ABC+Old-Style#1x", "ps:ABCOldStylex", "ps:Old-Style#1x", "family:Old-Style#1x",
              "family:Old Style#1x", "ps:Old", "family:Old", "family:Old"}},
        Case{"--", {}, {"ps:--", "ps:-", "family:-", "family: "}}}) {
    manager.lookups.clear();
    LookupName(row.name);
    EXPECT_EQ(row.expected, FontIDsOf(result.get())) << row.name;
    EXPECT_EQ(row.lookups, manager.lookups) << row.name;
  }
}

TEST_F(GlyphMarkLookupTest, FamilyIsFoundWithBlanksForHyphens) {
  AddStudio();
  EXPECT_EQ(0, LookupName("Old-Style_Q"));
  EXPECT_EQ((IDs{8}), FontIDsOf(result.get()));
  EXPECT_EQ("family:Old Style", manager.lookups.back());
  EXPECT_EQ(0, Lookup({{kGM_FamilyKey, "Old Style"}}, TypeOfFontName::kFamilyName));
  EXPECT_EQ((IDs{8}), FontIDsOf(result.get()));
}

TEST_F(GlyphMarkLookupTest, UnusableRequestsAskNobody) {
  AddStudio();
  CFArrayRef none = nullptr;
  EXPECT_EQ(-1, manager.GetGlyphMarkData(Named("OldStyle").get(), TypeOfFontName::kPostScriptName,
                                         excludedRemote, 0, &none));
  EXPECT_EQ(-1, Lookup({}));
  EXPECT_EQ(-1, LookupName(""));
  EXPECT_EQ(-1, LookupName(std::string(128, 'x')));
  EXPECT_EQ(-1, LookupName(std::string("Old\0Style", 9)));
  EXPECT_EQ(-1, Lookup({{kGM_PostScriptNameKey, "OldStyle"}}, static_cast<TypeOfFontName>(2)));
  EXPECT_EQ(-50, manager.GetGlyphMarkDataForFontName(nullptr, TypeOfFontName::kPostScriptName, excludedRemote,
                                                     0, &none));
  EXPECT_EQ(-50, manager.GetGlyphMarkDataForFontName("A", TypeOfFontName::kPostScriptName, excludedRemote, 0,
                                                     nullptr));
  EXPECT_EQ(Names{}, manager.lookups);
  EXPECT_EQ(0, LookupName(std::string(127, 'x')));
}

TEST_F(GlyphMarkLookupTest, DamagedCandidatesAreSkipped) {
  for (int i = 0; i < 8; ++i) AddFont("Foo", "TrueType", "A", std::to_string(10 - i));
  manager.namedFontStatus[1] = -1;
  manager.glyphMarkStatus[2] = 5;
  manager.glyphMarkText[3] = "";
  manager.glyphMarkText[4] = "not a list";
  manager.glyphMarkText[5] = "<plist version=\"1.0\"><array><string>x</string></array></plist>";
  manager.glyphMarkText[6] = "<plist version=\"1.0\"><dict/></plist>";
  manager.glyphMarkText[7] =
      "<plist "
      "version=\"1.0\"><array><dict><key>PostScriptName</key><integer>5</integer></dict><true/></array></"
      "plist>";
  EXPECT_EQ(0, LookupName("Foo"));
  EXPECT_EQ((IDs{8, 7}), FontIDsOf(result.get()));
  EXPECT_EQ(1, manager.endedWalks);
}

TEST_F(GlyphMarkLookupTest, AgentGoneKeepsWhatWasFoundAndEndsTheSearch) {
  for (int i = 0; i < 3; ++i) AddFont("Foo", "TrueType", "A", "1");
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

TEST_F(GlyphMarkLookupTest, OneCandidateIsNotCompared) {
  AddStudio();
  LookupName("OldStyle");
  EXPECT_EQ(0, library.CountCalls("GetFontIsActivated"));
  LookupName("Helvetica");
  EXPECT_EQ(0, library.CountCalls("GetFontIsActivated")) << "the records decide";
  LookupName("Minion-Regular");
  EXPECT_GT(library.CountCalls("GetFontIsActivated"), 0);
}

TEST_F(GlyphMarkLookupTest, BestMatchIsACopyOfTheFirst) {
  AddStudio();
  CFMutableDictionaryRef best = nullptr;
  EXPECT_EQ(0, GlyphMarkSupport::GetGlyphMarkDataForBestMatch(Named("Minion-Regular").get(), -2, &best));
  const auto owned = adoptCF(best);
  EXPECT_EQ("3.5", FontValue(best, kGM_VersionKey));
  CFMutableDictionaryRef none = nullptr;
  EXPECT_EQ(0, GlyphMarkSupport::GetGlyphMarkDataForBestMatch(Named("Nobody").get(), -2, &none));
  EXPECT_EQ(-50, GlyphMarkSupport::GetGlyphMarkDataForBestMatch(nullptr, -2, &none));
  EXPECT_EQ(nullptr, none);
}

TEST_F(GlyphMarkLookupTest, FillingGivesTrueNamesAndKeepsTheUnknown) {
  AddStudio();
  const auto fonts =
      MakeFontList({Named("ABC+OldStyle"), Named("Nobody"), Named("Helvetica"), Named("Minion-Regular")});
  CFArrayInsertValueAtIndex(fonts.get(), 0, CFSTR("no record"));
  const auto marker = MakeDictionary();
  CFDictionarySetValue(marker.get(), kGM_EmbeddedFonts, MakeArray().get());
  CFArrayAppendValue(fonts.get(), marker.get());
  EXPECT_EQ(0, Append(fonts, false, true));
  EXPECT_EQ((Names{"-", "Nobody", "Helvetica", "Minion-Regular", "-", "OldStyle"}), FontNamesOf(fonts.get()));
  EXPECT_EQ("5.0", FontValue(FontRecord::At(fonts.get(), 2), kGM_VersionKey));
  EXPECT_NE("", FontValue(FontRecord::At(fonts.get(), 2), kGM_DatabaseIDKey));
  EXPECT_EQ(0, Append(fonts, false, false));
  EXPECT_EQ("", FontValue(FontRecord::At(fonts.get(), 2), kGM_DatabaseIDKey)) << "no slug stores it";
}

TEST_F(GlyphMarkLookupTest, TwoNamesOfOneFontBecomeOneEntry) {
  AddStudio();
  const auto fonts = MakeFontList({Named("ABC+OldStyle"), Named("OldStyle"), Named("Old_Style#1")});
  EXPECT_EQ(0, Append(fonts, false, true));
  EXPECT_EQ((Names{"OldStyle"}), FontNamesOf(fonts.get()));
}

TEST_F(GlyphMarkLookupTest, InactiveFontsGoWhenAskedTo) {
  AddStudio();
  const auto fonts = MakeFontList({Named("Minion-Regular"), Named("Helvetica"), Named("Nobody")});
  CFArrayAppendValue(fonts.get(), CFSTR("no record"));
  EXPECT_EQ(0, Append(fonts, true, false));
  EXPECT_EQ((Names{"Helvetica", "-"}), FontNamesOf(fonts.get()));
}

TEST_F(GlyphMarkLookupTest, FamilySearchWhereTheNameFindsNothing) {
  AddFont("Foo-Real", "TrueType", "A", "1", 2, "Foo");
  AddFont("Foo-Also", "TrueType", "A", "1", 3, "Foo");
  const auto entry = Named("Foo=Bold-It");
  const auto known = Named("Bar");
  XCFUtils::PutStringIntoDict(known.get(), kGM_FamilyKey, "Foo");
  const auto fonts = MakeFontList({known});
  EXPECT_EQ(0, Append(fonts, true, true, true));
  EXPECT_EQ((Names{"Foo-Real", "Foo-Also"}), FontNamesOf(fonts.get()));
  const auto guessed = MakeFontList({entry});
  Append(guessed, true, true, true);
  EXPECT_EQ("Foo=Bold", FontValue(entry.get(), kGM_FamilyKey));
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
  const auto cached = MakeFontRecord(
      {{kGM_PostScriptNameKey, "Helvetica"}, {kGM_ActivationStateKey, "2"}, {kGM_DatabaseIDKey, "4"}});
  FontOrSetInfoRec rec;
  rec.fontInfo = cached.get();
  auto& entries = FontDataPreviouslyGottenFromDatabase::EntriesForTesting();
  entries[4] = rec;
  const auto fonts = MakeFontList({Named("Helvetica")});
  EXPECT_EQ(0, Append(fonts, true, true));
  EXPECT_EQ(Names{}, manager.lookups);
  EXPECT_EQ((IDs{4}), FontIDsOf(fonts.get()));
  entries.clear();
}

}  // namespace
