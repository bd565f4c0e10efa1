#include <gtest/gtest.h>

#include "Identity/FontDataPreviouslyGottenFromDatabase.h"
#include "Identity/GlyphMarkSupport.h"
#include "support/FakeFontManager.h"

namespace {

std::string SlugOf(CFArrayRef fonts) {
  CFStringRef slug = nullptr;
  EXPECT_EQ(0, GlyphMarkSupport::CreateXMLGlyphMarkSlug(fonts, &slug));
  const auto owned = adoptCF(slug);
  return slug ? ToStdString(slug) : "";
}

TEST(GlyphMarkSlugTest, TextIsAPropertyListWithSortedKeys) {
  EXPECT_EQ(
      "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
      "<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" "
      "\"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n"
      "<plist version=\"1.0\">\n"
      "<array>\n"
      "\t<dict>\n"
      "\t\t<key>FontKind</key>\n"
      "\t\t<string>A&amp;B</string>\n"
      "\t\t<key>PostScriptName</key>\n"
      "\t\t<string>\xE5\xB0\x8F</string>\n"
      "\t</dict>\n"
      "</array>\n"
      "</plist>\n",
      SlugOf(MakeFontList({MakeFontRecord({{kGM_PostScriptNameKey, "\xE5\xB0\x8F"}, {kGM_KindKey, "A&B"}})})
                 .get()));
}

TEST(GlyphMarkSlugTest, CharactersThatXMLCannotHoldAreDropped) {
  const auto record = MakeFontRecord(
      {{kGM_PostScriptNameKey, std::string("Fo\x01o\tA\xEF\xBF\xBF", 9)}, {kGM_VersionKey, "1.0"}});
  const UniChar broken[] = {'K', 0xD800, 0xD83D, 0xDE00};
  CFDictionarySetValue(record.get(), kGM_KindKey,
                       adoptCF(CFStringCreateWithCharacters(nullptr, broken, 4)).get());
  const std::string slug = SlugOf(MakeFontList({record}).get());
  EXPECT_NE(std::string::npos, slug.find("<string>Foo\tA</string>")) << slug;
  EXPECT_NE(std::string::npos, slug.find("<string>K\xF0\x9F\x98\x80</string>")) << slug;
  EXPECT_NE(std::string::npos, slug.find("<string>1.0</string>")) << slug;
}

TEST(GlyphMarkSlugTest, BadArgumentsAndLists) {
  CFStringRef slug = nullptr;
  EXPECT_EQ(-50, GlyphMarkSupport::CreateXMLGlyphMarkSlug(nullptr, &slug));
  EXPECT_EQ(-50, GlyphMarkSupport::CreateXMLGlyphMarkSlug(MakeArray().get(), nullptr));
  RetainPtr<CFMutableArrayRef> deep = MakeArray();
  for (int i = 0; i < 5000; ++i) {
    const auto outer = MakeArray();
    CFArrayAppendValue(outer.get(), deep.get());
    deep = outer;
  }
  EXPECT_EQ(0, GlyphMarkSupport::CreateXMLGlyphMarkSlug(deep.get(), &slug));
  EXPECT_EQ(nullptr, slug);
}

TEST(GlyphMarkSlugTest, OnlyTenKeysAreStored) {
  int sluggable = 0;
  for (CFStringRef key : GlyphMarkSupport::kAllGlyphMarkCFKeys) {
    if (GlyphMarkSupport::IsSluggableKey(key)) ++sluggable;
  }
  EXPECT_EQ(10, sluggable);
  EXPECT_EQ(nullptr, GlyphMarkSupport::kAllGlyphMarkCFKeys.back());

  const auto record =
      MakeFontRecord({{kGM_PostScriptNameKey, "A"}, {kGM_PathKey, "/a"}, {kGM_FamilyKey, "F"}});
  const auto fonts = MakeArray();
  CFArrayAppendValue(fonts.get(), kCFBooleanTrue);
  CFArrayAppendValue(fonts.get(), adoptCF(CFDictionaryCreateCopy(nullptr, record.get())).get());
  EXPECT_TRUE(GlyphMarkSupport::RemoveUnsluggableGlyphMarkKeys(fonts.get()));
  EXPECT_EQ(2, CFDictionaryGetCount(FontRecord::At(fonts.get(), 1)));
  EXPECT_FALSE(GlyphMarkSupport::RemoveUnsluggableGlyphMarkKeys(fonts.get()));
  EXPECT_FALSE(GlyphMarkSupport::RemoveUnsluggableKeysFromDictionary(nullptr));
}

struct RepairCase {
  CFStringRef key;
  const char* before;
  const char* after;
};

TEST(GlyphMarkRepairTest, ValuesOfTheOlderFontManager) {
  FakeFontManager manager;
  for (const RepairCase& row :
       {RepairCase{kGM_KindKey, "ps pair", "Postscript"}, RepairCase{kGM_KindKey, "PS MM", "PostScript - MM"},
        RepairCase{kGM_KindKey, "OpenType (TT)", "OpenType - TT"},
        RepairCase{kGM_KindKey, "opentype (PS)", "OpenType - PS"},
        RepairCase{kGM_KindKey, "DFONT", "TrueType"}, RepairCase{kGM_KindKey, "TrueType", "TrueType"},
        RepairCase{kGM_FoundryKey, "unknown", "--"}, RepairCase{kGM_FoundryKey, "UNKNOWN", "--"},
        RepairCase{kGM_FoundryKey, "acme type", "Acme Type"},
        RepairCase{kGM_FoundryKey, "ACME type", "ACME type"}, RepairCase{kGM_FoundryKey, "", ""},
        RepairCase{kGM_KerningChecksumKey, "1048575", "1048575"},
        RepairCase{kGM_KerningChecksumKey, "1048576", "0"}, RepairCase{kGM_KerningChecksumKey, "-1", "0"},
        RepairCase{kGM_KerningChecksumKey, "99999999999999999999", "0"},
        RepairCase{kGM_KerningChecksumKey, "abc", "abc"}}) {
    const auto record = MakeFontRecord({{row.key, row.before}});
    EXPECT_EQ(std::string(row.before) != row.after,
              GlyphMarkSupport::PostProcessSingleFontForSlug(record.get()))
        << row.before;
    EXPECT_EQ(row.after, FontValue(record.get(), row.key));
  }
}

TEST(GlyphMarkRepairTest, MissingChecksumComesFromThe12One) {
  struct Case {
    FontFields fields;
    std::string checksum;
  };
  for (const Case& row : {Case{{{kGM_ChecksumKey, "0"}, {kGM_GlyphMark_1_2_Key, "123"}}, "123"},
                          Case{{{kGM_ChecksumKey, ""}, {kGM_GlyphMark_1_2_Key, "123"}}, "123"},
                          Case{{{kGM_GlyphMark_1_2_Key, "123"}}, "123"},
                          Case{{{kGM_ChecksumKey, "5"}, {kGM_GlyphMark_1_2_Key, "123"}}, "5"},
                          Case{{{kGM_ChecksumKey, "0"}, {kGM_GlyphMark_1_2_Key, "0"}}, "0"}}) {
    const auto record = MakeFontRecord(row.fields);
    GlyphMarkSupport::FixGlyphMarkChecksumsIfNeeded(record.get());
    EXPECT_EQ(row.checksum, FontValue(record.get(), kGM_ChecksumKey));
  }
}

TEST(GlyphMarkRepairTest, NeedsAFontManagerAndARecord) {
  const auto fonts = MakeFontList({MakeFontRecord({{kGM_KindKey, "DFont"}})});
  CFArrayAppendValue(fonts.get(), CFSTR("no record"));
  GlyphMarkSupport::PostProcessGlyphMarkSlug(fonts.get());
  EXPECT_EQ("DFont", FontValue(FontRecord::At(fonts.get(), 0), kGM_KindKey));
  FakeFontManager manager;
  GlyphMarkSupport::PostProcessGlyphMarkSlug(fonts.get());
  EXPECT_EQ("TrueType", FontValue(FontRecord::At(fonts.get(), 0), kGM_KindKey));
  EXPECT_FALSE(GlyphMarkSupport::PostProcessSingleFontForSlug(nullptr));
  GlyphMarkSupport::PostProcessGlyphMarkSlug(nullptr);
}

TEST(ActiveFontCacheTest, LowestActiveFontOfTheNameAnswers) {
  std::vector<RetainPtr<CFMutableDictionaryRef>> records;
  auto& entries = FontDataPreviouslyGottenFromDatabase::EntriesForTesting();
  const auto add = [&](unsigned int fontID, const char* name, const char* state, int32_t kind = 0) {
    records.push_back(MakeFontRecord({{kGM_PostScriptNameKey, name}}));
    if (state) XCFUtils::PutStringIntoDict(records.back().get(), kGM_ActivationStateKey, state);
    FontOrSetInfoRec rec;
    rec.kind = kind;
    rec.databaseID = fontID;
    rec.fontInfo = records.back().get();
    entries[fontID] = rec;
  };
  CFMutableDictionaryRef font = nullptr;
  unsigned int fontID = 0;
  const auto ask = [&](const char* name) {
    const bool found =
        FontDataPreviouslyGottenFromDatabase::CreateCopyOfGlyphmarkDataForActiveFont(name, font, fontID);
    if (found) CFRelease(font);
    return found ? fontID : 0u;
  };
  EXPECT_EQ(0u, ask("Foo"));
  add(1, "Foo", "2", FontOrSetInfoRec::kKindSet);
  add(2, "Foo", "1");
  add(3, "Foo", nullptr);
  add(4, "foo", "2");
  EXPECT_EQ(0u, ask("Foo"));
  add(9, "Foo", "2");
  add(7, "Foo", "3");
  EXPECT_EQ(7u, ask("Foo"));
  entries.clear();
}

}  // namespace
