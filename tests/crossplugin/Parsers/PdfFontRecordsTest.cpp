#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "PdfFonts.h"
#include "support/PdfFixture.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

std::string FileWithFont(const std::string& dictionary) {
  return PdfPage("/Font << /F 4 0 R >>", "4 0 obj\n" + dictionary + "\nendobj\n");
}

TEST(PdfFontRecords, NamesComeFromTheDictionary) {
  const struct {
    const char* name;
    const char* dictionary;
    Names names;
  } rows[] = {
      {"a subset", "<< /BaseFont /ABCDEF+Foo,Bold >>", {"Foo-Bold"}},
      {"the later name wins", "<< /BaseFont /Foo /FontName /Bar >>", {"Bar"}},
      {"a Multiple Master instance", "<< /BaseFont /MinionMM_367_400_ >>", {"MinionMM"}},
      {"values aren't keys", "<< /Type /BaseFont /Encoding /FontName /BaseFont /Foo >>", {"Foo"}},
      {"widths", "<< /Widths [1 2 3] /BaseFont /Foo >>", {"Foo"}},
      {"widths elsewhere", "<< /Widths 9 0 R /BaseFont /Foo >>", {"Foo"}},
      {"a file hides the rest of its line", "<< /FontFile 9 0 R /BaseFont /Foo\n>>", {""}},
      {"no name", "<< /Type /Font >>", {""}},
      {"no dictionary", "/BaseFont /Foo", {"Foo"}},
      {"an escaped name", "<< /BaseFont /Foo#2DBold >>", {"Foo-Bold"}},
      {"UTF-8", "<< /BaseFont /Caf#C3#A9 >>", {"Caf\u00e9"}},
      {"no UTF-8", "<< /BaseFont /Caf#E9 >>", {"Caf\u00e9"}},
      {"a font of fonts isn't followed", "<< /BaseFont /Foo /DescendantFonts [5 0 R] >>", {"Foo"}},
  };
  for (const auto& row : rows) EXPECT_EQ(ReadPdf(FileWithFont(row.dictionary)).names, row.names) << row.name;
}

TEST(PdfFontRecords, GlyphMarkKeysCountWithTheirMarker) {
  const struct {
    const char* name;
    const char* keys;
    const char* foundry;
    const char* version;
  } rows[] = {
      {"both forms", "/FontIdentifier /X /Foundry (Acme Type) /Version 1.5", "Acme Type", "1.5"},
      {"one level of nesting", "/FontIdentifier /X /Foundry (Acme (Type)) /Version (1(2)3)", "Acme (Type",
       "1(23"},
      {"a bracket that doesn't close", "/FontIdentifier /X /Foundry (Acme", "", ""},
      {"an inner one that doesn't", "/FontIdentifier /X /Foundry (Acme (Type)", "", ""},
      {"ends of plain values", "/FontIdentifier /X /Foundry\tAcme/Version\t 2\n", "Acme", "2"},
      {"empty values", "/FontIdentifier /X /Foundry () /Version /X", "", ""},
      {"no marker", "/Foundry (Acme) /Version 1", "", ""},
      {"no UTF-8", "/FontIdentifier /X /Foundry (Caf\xE9)", "Caf\u00e9", ""},
  };
  for (const auto& row : rows) {
    const std::string file = FileWithFont(std::string("<< /BaseFont /Foo ") + row.keys + ">>");
    const PdfFonts fonts = ReadPdf(file);
    ASSERT_THAT(fonts.names, ElementsAre("Foo")) << row.name;
    CFDictionaryRef font = FontRecord::At(fonts.records.get(), 0);
    EXPECT_EQ(FontValue(font, kGM_FoundryKey), row.foundry) << row.name;
    EXPECT_EQ(FontValue(font, kGM_VersionKey), row.version) << row.name;

    const PdfFonts namesOnly = ReadPdf(file, false);
    EXPECT_EQ(CFDictionaryGetCount(FontRecord::At(namesOnly.records.get(), 0)), 1) << row.name;
  }
}

TEST(PdfFontRecords, EveryGlyphMarkKeyHasItsPlace) {
  const PdfFonts fonts = ReadPdf(FileWithFont(
      "<< /BaseFont /Foo /FontIdentifier /X /Foundry A /Version B /Kerning 1 /OutlineFileSize 2 /Kind D "
      "/Checksum 3 /GlyphMark_1_2_Checksum 4 /Family (Foo Family) >>"));
  CFDictionaryRef font = FontRecord::At(fonts.records.get(), 0);
  const std::pair<CFStringRef, const char*> expected[] = {{kGM_FoundryKey, "A"},
                                                          {kGM_VersionKey, "B"},
                                                          {kGM_KerningChecksumKey, "1"},
                                                          {kGM_OutlineFileSizeKey, "2"},
                                                          {kGM_KindKey, "D"},
                                                          {kGM_ChecksumKey, "3"},
                                                          {kGM_GlyphMark_1_2_Key, "4"},
                                                          {kGM_FamilyKey, "Foo Family"},
                                                          {kGM_PostScriptNameKey, "Foo"}};
  for (const auto& [key, value] : expected) EXPECT_EQ(FontValue(font, key), value);
  EXPECT_EQ(CFDictionaryGetCount(font), 9);
}

TEST(PdfFontRecords, ALongDictionaryIsNotKept) {
  const std::string keys = " /FontIdentifier /X /Version 1 >>";
  const PdfFonts kept = ReadPdf(FileWithFont("<< /BaseFont /Foo {{fill 1000000}}" + keys));
  const PdfFonts dropped = ReadPdf(FileWithFont("<< /BaseFont /Foo {{fill 1100000}}" + keys));
  EXPECT_EQ(FontValue(FontRecord::At(kept.records.get(), 0), kGM_VersionKey), "1");
  EXPECT_EQ(FontValue(FontRecord::At(dropped.records.get(), 0), kGM_VersionKey), "");
}

// Page 3 with font 4, and XMP metadata 5 that the catalog names.
std::string FileWithXMP(const std::string& fonts, const std::string& xmp) {
  return ExpandPdf(
      "%PDF-1.4\n1 0 obj\n<< /Type /Catalog /Metadata 5 0 R /Pages 2 0 R >>\nendobj\n"
      "2 0 obj\n<< /Kids [3 0 R] /Count 1 /Font << " +
      fonts +
      " >> >>\nendobj\n"
      "4 0 obj\n<< /BaseFont /Foo >>\nendobj\n5 0 obj\n<< /Type /Metadata >>\nstream\n" +
      xmp + "\nendstream\nendobj\n{{xref}}trailer << /Root 1 0 R >>\n{{startxref}}");
}

std::string XMPFont(const std::string& name) {
  return "<rdf:li rdf:parseType=\"Resource\">\n <stFnt:fontName>" + name +
         "</stFnt:fontName><stFnt:fontFamily>F</stFnt:fontFamily>\n</rdf:li>\n";
}

TEST(PdfFontRecords, TheXMPListAddsItsFonts) {
  const std::string begin = "<x:xmpmeta><xmpTPg:Fonts><rdf:Bag>\n";
  const std::string end = "</rdf:Bag></xmpTPg:Fonts></x:xmpmeta>\n";
  const struct {
    const char* name;
    std::string xmp;
    Names names;
  } rows[] = {
      {"one more", begin + XMPFont("Foo") + XMPFont("Bar-Bold") + end, {"Foo", "Bar-Bold"}},
      {"the same twice", begin + XMPFont("Bar") + XMPFont("Bar") + end, {"Foo", "Bar"}},
      {"no name", begin + "<rdf:li></rdf:li>" + XMPFont("") + XMPFont("Bar") + end, {"Foo", "Bar"}},
      {"outside the list", XMPFont("Bar") + begin + end + XMPFont("Baz"), {"Foo"}},
      {"a list that breaks off", begin + XMPFont("Bar") + "<rdf:li><stFnt:fontFamily>", {"Foo", "Bar"}},
  };
  for (const auto& row : rows) {
    const PdfFonts fonts = ReadPdf(FileWithXMP("/F 4 0 R", row.xmp));
    EXPECT_EQ(fonts.names, row.names) << row.name;
    EXPECT_EQ(fonts.error, 0) << row.name;
  }
  const PdfFonts both = ReadPdf(FileWithXMP("/F 4 0 R", begin + XMPFont("Bar") + end));
  EXPECT_THAT(both.sources, ElementsAre(EFontSource::kPageResources, EFontSource::kXMPList));
}

TEST(PdfFontRecords, TheXMPListAloneDoesNotCount) {
  const PdfFonts fonts = ReadPdf(FileWithXMP("", "<xmpTPg:Fonts>" + XMPFont("Bar") + "</xmpTPg:Fonts>"));
  EXPECT_THAT(fonts.names, IsEmpty());
  EXPECT_TRUE(fonts.Traced("Ignoring XMP metadata because no fonts were listed"));
}

}  // namespace
