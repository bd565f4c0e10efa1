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
  const auto record = MakeDictionary();
  for (CFStringRef key : GlyphMarkSupport::kAllGlyphMarkCFKeys) {
    if (key) XCFUtils::PutStringIntoDict(record.get(), key, "x");
  }
  CFDictionarySetValue(record.get(), kCFBooleanTrue, CFSTR("x"));
  const auto fonts = MakeArray();
  CFArrayAppendValue(fonts.get(), kCFBooleanTrue);
  CFArrayAppendValue(fonts.get(), adoptCF(CFDictionaryCreateCopy(nullptr, record.get())).get());
  EXPECT_TRUE(GlyphMarkSupport::RemoveUnsluggableGlyphMarkKeys(fonts.get()));
  EXPECT_TRUE(CFEqual(ParseFontRecord("PostScriptName=x|FontKind=x|Foundry=x|Version=x|KerningChecksum=x|"
                                      "Checksum=x|GlyphMark_1.2_Checksum=x|OutlineFileSize=x|"
                                      "OutlineFileName=x|Family=x")
                          .get(),
                      FontRecord::At(fonts.get(), 1)));
  EXPECT_FALSE(GlyphMarkSupport::RemoveUnsluggableGlyphMarkKeys(fonts.get()));
  EXPECT_FALSE(GlyphMarkSupport::RemoveUnsluggableKeysFromDictionary(nullptr));
}

TEST(GlyphMarkRepairTest, ValuesOfTheOlderFontManager) {
  const FakeFontManager manager;
  const std::vector<std::pair<const char*, const char*>> cases = {
      {"FontKind=ps pair", "FontKind=Postscript"},
      {"FontKind=PS MM", "FontKind=PostScript - MM"},
      {"FontKind=OpenType (TT)", "FontKind=OpenType - TT"},
      {"FontKind=opentype (PS)", "FontKind=OpenType - PS"},
      {"FontKind=DFONT", "FontKind=TrueType"},
      {"FontKind=truetype", "FontKind=truetype"},
      {"Foundry=UNKNOWN", "Foundry=--"},
      {"Foundry=acme type", "Foundry=Acme Type"},
      {"Foundry=ACME type", "Foundry=ACME type"},
      {"Foundry=", "Foundry="},
      {"KerningChecksum=1048575", "KerningChecksum=1048575"},
      {"KerningChecksum=1048576", "KerningChecksum=0"},
      {"KerningChecksum=-1", "KerningChecksum=0"},
      {"KerningChecksum=99999999999999999999", "KerningChecksum=0"},
      {"KerningChecksum=abc", "KerningChecksum=abc"},
      {"Checksum=0|GlyphMark_1.2_Checksum=123", "Checksum=123|GlyphMark_1.2_Checksum=123"},
      {"Checksum=|GlyphMark_1.2_Checksum=123", "Checksum=123|GlyphMark_1.2_Checksum=123"},
      {"GlyphMark_1.2_Checksum=123", "Checksum=123|GlyphMark_1.2_Checksum=123"},
      {"Checksum=5|GlyphMark_1.2_Checksum=123", "Checksum=5|GlyphMark_1.2_Checksum=123"},
      {"Checksum=|GlyphMark_1.2_Checksum=0", "Checksum=|GlyphMark_1.2_Checksum=0"}};
  for (const auto& [before, after] : cases) {
    const auto record = ParseFontRecord(before);
    EXPECT_EQ(std::string(before) != after, GlyphMarkSupport::PostProcessSingleFontForSlug(record.get()))
        << before;
    EXPECT_TRUE(CFEqual(ParseFontRecord(after).get(), record.get())) << before;
  }
}

TEST(GlyphMarkRepairTest, NeedsAFontManagerAndARecord) {
  const auto fonts = MakeFontList({ParseFontRecord("FontKind=DFont")});
  CFArrayAppendValue(fonts.get(), CFSTR("no record"));
  GlyphMarkSupport::PostProcessGlyphMarkSlug(fonts.get());
  EXPECT_EQ("DFont", FontValue(FontRecord::At(fonts.get(), 0), kGM_KindKey));
  const FakeFontManager manager;
  GlyphMarkSupport::PostProcessGlyphMarkSlug(fonts.get());
  EXPECT_EQ("TrueType", FontValue(FontRecord::At(fonts.get(), 0), kGM_KindKey));
  EXPECT_FALSE(GlyphMarkSupport::PostProcessSingleFontForSlug(nullptr));
  GlyphMarkSupport::PostProcessGlyphMarkSlug(nullptr);
}

TEST(ActiveFontCacheTest, LowestActiveFontOfTheNameAnswers) {
  std::vector<RetainPtr<CFMutableDictionaryRef>> records;
  auto& entries = FontDataPreviouslyGottenFromDatabase::EntriesForTesting();
  const auto add = [&](unsigned int fontID, const char* record, int32_t kind = FontOrSetInfoRec::kKindFont) {
    records.push_back(ParseFontRecord(record));
    entries[fontID] = {.kind = kind, .databaseID = fontID, .fontInfo = records.back().get()};
  };
  const auto ask = [](const char* name) {
    CFMutableDictionaryRef font = nullptr;
    unsigned int fontID = 0;
    const bool found =
        FontDataPreviouslyGottenFromDatabase::CreateCopyOfGlyphmarkDataForActiveFont(name, font, fontID);
    EXPECT_EQ(found, adoptCF(font) && fontID != 0);
    return fontID;
  };
  add(1, "PostScriptName=Foo|ActivationStatus=2", FontOrSetInfoRec::kKindSet);
  add(2, "PostScriptName=Foo|ActivationStatus=1");
  add(3, "PostScriptName=Foo");
  add(4, "PostScriptName=foo|ActivationStatus=2");
  EXPECT_EQ(0u, ask("Foo"));
  add(9, "PostScriptName=Foo|ActivationStatus=2");
  add(7, "PostScriptName=Foo|ActivationStatus=3");
  EXPECT_EQ(7u, ask("Foo"));
  entries.clear();
}

}  // namespace
