#include <gmock/gmock.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>

#include "EpsTest.h"

namespace {

int sWritesUntilFailure = -1;  // negative: none fails

}  // namespace

// In the library's place for the whole program; a write that is to fail gets half of its bytes to the file.
ssize_t pwrite(int file, const void* bytes, size_t count, off_t offset) {
  const bool fails = sWritesUntilFailure == 0;
  if (sWritesUntilFailure >= 0) --sWritesUntilFailure;
  const long written = syscall(SYS_pwrite64, file, bytes, fails ? count / 2 : count, offset);
  if (fails) errno = EIO;
  return fails ? -1 : written;
}

namespace {

using testing::ElementsAre;

constexpr char kHead[] = "%!PS-Adobe-3.0 EPSF-3.0\n%%Title: a test of some length\n";
constexpr char kTail[] = "%%EndComments\nshowpage\n%%EOF\n";
constexpr char kBlock[] = "%%DocumentFontSpecs: <FONTSPEC NAME=\"Foo\" FOUNDRY=\"Acme\"/>\r";

class EpsSaveTest : public EpsTest {
 protected:
  int Save(std::string_view bytes) { return Save(*Parse(bytes, false)); }

  int Save(FontParserEPS& parser) const {
    parser.SetFonts(m_records.get());
    const int result = parser.Save();
    EXPECT_EQ(parser.GetError(), result);
    return result;
  }

  RetainPtr<CFMutableArrayRef> m_records =
      MakeFontList({MakeFontRecord({{kGM_PostScriptNameKey, "Foo"}, {kGM_FoundryKey, "Acme"}})});
};

TEST_F(EpsSaveTest, WritesALineARecord) {
  const auto records = MakeFontList({
      MakeFontRecord({{kGM_PostScriptNameKey, "Foo-Bold"},
                      {kGM_KindKey, "OpenType - PS"},
                      {kGM_GlyphMark_1_2_Key, "5"},
                      {kGM_OutlineFileNameKey, "foo.otf"},
                      {kGM_VersionKey, "1.0"}}),
      MakeFontRecord({{kGM_OutlineFileSizeKey, "1"},
                      {kGM_FamilyKey, "Fo o"},
                      {kGM_ChecksumKey, "2"},
                      {kGM_KerningChecksumKey, "3"}}),
      MakeFontRecord({}),
  });
  FontParserEPS parser(nullptr, nullptr, false);
  parser.SetFonts(records.get());
  EXPECT_EQ(parser.WriteFontRecordsToBuffer(),
            "%%DocumentFontSpecs: <FONTSPEC NAME=\"Foo-Bold\" KIND=\"OpenType - PS\" VERSION=\"1.0\"/>\r"
            "%%+ <FONTSPEC OUTLINEFILESIZE=\"1\" FAMILY=\"Fo o\" CHECKSUM=\"2\" KERNINGCHECKSUM=\"3\"/>\r"
            "%%+ <FONTSPEC/>\r");
  CFArrayInsertValueAtIndex(records.get(), 0, ToCFString("no record").get());
  EXPECT_TRUE(parser.WriteFontRecordsToBuffer().starts_with("%%+ <FONTSPEC NAME=\"Foo-Bold\""));
}

TEST_F(EpsSaveTest, LeavesOutValuesThatAnAttributeCannotHold) {
  const auto records = MakeFontList({MakeFontRecord({{kGM_PostScriptNameKey, std::string(254, 'n')},
                                                     {kGM_FamilyKey, std::string(255, 'f')},
                                                     {kGM_FoundryKey, "a \"quoted\" one"},
                                                     {kGM_VersionKey, "1\r2"},
                                                     {kGM_KindKey, "1\n2"},
                                                     {kGM_ChecksumKey, "<&>"}})});
  FontParserEPS parser(nullptr, nullptr, false);
  parser.SetFonts(records.get());
  EXPECT_EQ(parser.WriteFontRecordsToBuffer(),
            "%%DocumentFontSpecs: <FONTSPEC NAME=\"" + std::string(254, 'n') + "\" CHECKSUM=\"<&>\"/>\r");
}

TEST_F(EpsSaveTest, MovesTailsOfAnyLength) {
  for (const size_t length : {100, 511'999, 512'000, 512'001, 1'300'000}) {
    std::string tail = std::string(kTail) + "x";
    for (size_t i = 0; tail.size() < length; ++i) tail += std::to_string(i) + " ";
    tail.resize(std::max(length, std::string(kTail).size()));
    EXPECT_EQ(Save(kHead + tail), 0);
    EXPECT_TRUE(File() == std::string(kHead) + kBlock + tail) << "tail of " << length;
    EXPECT_THAT(NamesOf(*ParseAgain()), ElementsAre("Foo"));
  }
}

TEST_F(EpsSaveTest, MovesTheTailBehindABlockLongerThanIt) {
  m_records = MakeArray();
  for (int i = 0; i < 3000; ++i) {
    CFArrayAppendValue(m_records.get(),
                       MakeFontRecord({{kGM_PostScriptNameKey, "Font" + std::to_string(i) + "x"}}).get());
  }
  EXPECT_EQ(Save(std::string(kHead) + kTail), 0);
  EXPECT_TRUE(File().ends_with(std::string("/>\r") + kTail));
  EXPECT_EQ(NamesOf(*ParseAgain()).size(), 3000U);
}

TEST_F(EpsSaveTest, MendsABinaryHeader) {
  const std::string text = std::string(kHead) + kTail;
  const auto grown = static_cast<uint32_t>(std::string(kBlock).size());
  struct {
    const char* name;
    std::string before;
    uint32_t tiffMovesBy;
  } rows[] = {{"preview behind", EpsFixture(text).DosHeader("II*preview").Bytes(), grown},
              {"preview before", EpsFixture(text).DosHeader("II*preview", true).Bytes(), 0},
              {"no preview", EpsFixture(text).DosHeader().Bytes(), 0}};
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    EXPECT_EQ(Save(row.before), 0);
    const std::string after = File();
    const size_t start = EpsFixture::Word(row.before, 4);
    EXPECT_EQ(EpsFixture::Word(after, 8), text.size() + grown);
    EXPECT_EQ(EpsFixture::Word(after, 20), EpsFixture::Word(row.before, 20) + row.tiffMovesBy);
    EXPECT_EQ(after.substr(start, text.size() + grown), std::string(kHead) + kBlock + kTail);
    for (const size_t kept : {0, 4, 12, 16, 24, 28}) {
      EXPECT_EQ(EpsFixture::Word(after, kept), EpsFixture::Word(row.before, kept)) << kept;
    }
    EXPECT_EQ(after.size(), row.before.size() + grown);
    EXPECT_THAT(NamesOf(*ParseAgain()), ElementsAre("Foo"));
  }
}

TEST_F(EpsSaveTest, ASecondSaveCountsMore) {
  const auto parser = Parse(std::string(kHead) + kTail, false);
  EXPECT_EQ(Save(*parser), 0);
  m_records = MakeFontList({MakeFontRecord({{kGM_PostScriptNameKey, "Foo"}, {kGM_FoundryKey, "Other"}})});
  EXPECT_EQ(Save(*parser), 0);
  const auto fonts = FontsOf(*ParseAgain());
  ASSERT_THAT(FontNamesOf(fonts.get()), ElementsAre("Foo"));
  EXPECT_EQ(FontValue(FontRecord::At(fonts.get(), 0), kGM_FoundryKey), "Other");
}

TEST_F(EpsSaveTest, RefusesWithoutTouchingTheFile) {
  const std::string text = std::string(kHead) + kTail;
  const auto withWord = [&](size_t field, const std::string& word) {
    return std::string(EpsFixture(text).DosHeader("II*").Bytes()).replace(field, 4, word);
  };
  const struct {
    const char* name;
    std::string bytes;
  } rows[] = {{"no end of comments", "%!PS-Adobe-3.0 EPSF-3.0 with no end\nshowpage\n"},
              {"end of comments as the first line", kTail},
              {"end of comments at the start of what is no EPS", std::string("other\n") + kTail},
              {"PostScript section that ends earlier", withWord(8, std::string("\1\0\0\0", 4))},
              {"PostScript section that would be too long", withWord(8, "\xFF\xFF\xFF\xFF")},
              {"TIFF section that would lie too far back", withWord(20, "\xFF\xFF\xFF\xFF")}};
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    EXPECT_EQ(Save(row.bytes), -1);
    EXPECT_EQ(File(), row.bytes);
  }
}

TEST_F(EpsSaveTest, RefusesAFileThatHasChangedSinceItWasRead) {
  const auto parser = Parse(std::string(kHead) + kTail, false);
  const std::string changed = std::string(kHead) + "%%Another: line\n" + kTail;
  m_folder.Write("test.eps", changed);
  EXPECT_EQ(Save(*parser), -1);
  EXPECT_EQ(File(), changed);
}

TEST_F(EpsSaveTest, DoesNothingWithoutRecordsOrForAReadOnlyParser) {
  const std::string text = std::string(kHead) + kTail;
  EXPECT_EQ(Save(*Parse(text, true)), 0);
  m_records = MakeArray();
  EXPECT_EQ(Save(text), 0);
  m_records = nullptr;
  EXPECT_EQ(Save(text), 0);
  EXPECT_EQ(File(), text);
}

TEST_F(EpsSaveTest, AWriteThatFailsIsTakenBack) {
  std::string tail = kTail;
  for (int i = 0; tail.size() < 1'300'000; ++i) tail += std::to_string(i) + " ";
  const std::string bytes = EpsFixture(kHead + tail).DosHeader("II*preview").Bytes();
  // The zeros of a longer file, three pieces of its tail, the block and the header.
  for (int write = 0; write < 6; ++write) {
    const auto parser = Parse(bytes, false);
    sWritesUntilFailure = write;
    EXPECT_EQ(Save(*parser), -1) << write;
    EXPECT_TRUE(File() == bytes) << write;
    EXPECT_THAT(parser->GetNotes(), ElementsAre(testing::HasSubstr("unchanged"))) << write;
    EXPECT_EQ(Save(*parser), 0) << write;
    EXPECT_THAT(NamesOf(*ParseAgain()), ElementsAre("Foo"));
  }
}

}  // namespace
