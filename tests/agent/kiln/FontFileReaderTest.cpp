#include <gtest/gtest.h>

#include "kiln/reader/FontChecksums.h"
#include "kiln/reader/FontFileReader.h"
#include "kiln/reader/FontText.h"
#include "protocol/ErrorCodes.h"
#include "support/FontBuilder.h"
#include "support/TemporaryFolder.h"

namespace kiln {
namespace {

class FontFileReaderTest : public testing::Test {
 protected:
  wire::ReadFile Read(const std::string& name, const std::string& bytes, const std::string& copyTo = {}) {
    wire::ReaderJob job;
    job.set_path(mFolder.Write(name, bytes));
    if (!copyTo.empty()) job.set_copy_to(mFolder.Path(copyTo));
    return mReader.Read(job);
  }

  TemporaryFolder mFolder;
  FontFileReader mReader;
};

TEST_F(FontFileReaderTest, TellsWhatATrueTypeFontSaysOfItself) {
  FontBuilder font{"Brenta-BoldItalic", "Brenta Narrow", "Bold Italic", "Brenta", "Version 2.37; fix 4"};
  font.manufacturer = "Foundry of the Brenta";
  const wire::ReadFile file = Read("Brenta.ttf", font.TrueType());
  ASSERT_EQ(file.error(), codes::kSuccess);
  ASSERT_EQ(file.faces_size(), 1);
  const wire::ReadFace& face = file.faces(0);
  EXPECT_EQ(face.postscript_name(), "Brenta-BoldItalic");
  EXPECT_EQ(face.kind(), wire::FONT_KIND_TRUETYPE);
  EXPECT_EQ(face.family(), "Brenta Narrow");
  EXPECT_EQ(face.family_group_name(), "Brenta");
  EXPECT_EQ(face.style(), "Bold Italic");
  EXPECT_EQ(face.display_name(), "Brenta Narrow Bold Italic");
  EXPECT_EQ(face.version(), "2.37; fix 4");
  EXPECT_EQ(face.foundry(), "Foundry of the Brenta");
  EXPECT_EQ(face.kerning_checksum(), 0u);
  EXPECT_EQ(file.size(), font.TrueType().size());
  EXPECT_EQ(file.sha256().size(), 64u);
}

TEST_F(FontFileReaderTest, KnowsTheKindByTheOutlines) {
  const FontBuilder font;
  struct {
    const char* name;
    std::string bytes;
    wire::FontKind kind;
  } const cases[] = {
      {"font.ttf", font.TrueType(), wire::FONT_KIND_TRUETYPE},
      {"font.otf", font.OpenType(), wire::FONT_KIND_OPENTYPE},
      {"misnamed.ttf", font.OpenType(), wire::FONT_KIND_OPENTYPE},
      {"font.pfa", font.Type1(), wire::FONT_KIND_POSTSCRIPT},
      {"font.pfb", font.Type1Segments(), wire::FONT_KIND_POSTSCRIPT},
  };
  for (const auto& one : cases) {
    SCOPED_TRACE(one.name);
    const wire::ReadFile file = Read(one.name, one.bytes);
    ASSERT_EQ(file.error(), codes::kSuccess);
    ASSERT_EQ(file.faces_size(), 1);
    EXPECT_EQ(file.faces(0).kind(), one.kind);
    EXPECT_EQ(file.faces(0).postscript_name(), "Testa-Regular");
    EXPECT_EQ(file.faces(0).version(), "1.000");
    EXPECT_NE(file.faces(0).glyphmark_checksum(), 0u);
  }
}

TEST_F(FontFileReaderTest, ReadsEveryFaceOfACollection) {
  FontBuilder second;
  second.postScriptName = "Testa-Bold";
  const wire::ReadFile file = Read("both.ttc", FontBuilder::Collection({FontBuilder(), second}));
  ASSERT_EQ(file.error(), codes::kSuccess);
  ASSERT_EQ(file.faces_size(), 2);
  EXPECT_EQ(file.faces(0).postscript_name(), "Testa-Regular");
  EXPECT_EQ(file.faces(1).postscript_name(), "Testa-Bold");
  EXPECT_EQ(file.faces(1).face_index(), 1u);
}

TEST_F(FontFileReaderTest, TakesKerningFromTheMetricsBesideAType1Font) {
  FontBuilder font;
  font.manufacturer = "URW";
  mFolder.Write("Testa.afm", "StartFontMetrics 2.0\nKPX A V -70\nKPX A W -60\nEndFontMetrics\n");
  const wire::ReadFile file = Read("Testa.pfb", font.Type1Segments(), "copy");
  ASSERT_EQ(file.error(), codes::kSuccess);
  EXPECT_EQ(file.faces(0).foundry(), "URW");
  EXPECT_NE(file.faces(0).kerning_checksum(), 0u);
  EXPECT_TRUE(file.has_metrics());
  EXPECT_EQ(mFolder.Read("copy"), font.Type1Segments());
  EXPECT_EQ(mFolder.Read("copy.afm"), mFolder.Read("Testa.afm"));
}

TEST_F(FontFileReaderTest, ChecksumsTellApartWhatTheyAreFor) {
  FontBuilder renamed;
  renamed.family = "Another Name";
  FontBuilder kerned;
  kerned.kern = std::string("\0\0\0\1\0\0\0\x14\0\1\0\1\0\6\0\0\0\0\0\1\0\1\xFF\xB0", 24);
  const wire::ReadFile plain = Read("plain.ttf", FontBuilder().TrueType());
  const wire::ReadFile other = Read("other.ttf", renamed.TrueType());
  const wire::ReadFile withKern = Read("kern.ttf", kerned.TrueType());
  const wire::ReadFile pfa = Read("a.pfa", FontBuilder().Type1());
  EXPECT_NE(plain.checksum(), other.checksum());
  EXPECT_EQ(plain.faces(0).glyphmark_checksum(), other.faces(0).glyphmark_checksum()) << "drawn the same";
  EXPECT_EQ(plain.faces(0).glyphmark_checksum(), withKern.faces(0).glyphmark_checksum());
  EXPECT_NE(withKern.faces(0).kerning_checksum(), 0u);
  EXPECT_LT(withKern.faces(0).kerning_checksum(), 0x100000u);
  EXPECT_NE(plain.faces(0).glyphmark_checksum(), pfa.faces(0).glyphmark_checksum());
}

TEST_F(FontFileReaderTest, RefusesWhatIsNoSoundFontAndLeavesNoCopy) {
  const std::string font = FontBuilder().TrueType();
  std::string farTable = font;
  farTable.replace(12 + 8, 4, "\x7F\xFF\xFF\xFF");  // the first table's offset
  FontBuilder nameless;
  nameless.postScriptName = nameless.family = nameless.style = " ";
  struct {
    const char* name;
    std::string bytes;
    uint32_t error;
  } const cases[] = {
      {"empty.ttf", "", codes::kNotAFontFile},
      {"text.ttf", "This is a shopping list, and no font at all.", codes::kNotAFontFile},
      {"head only.ttf", font.substr(0, 12), codes::kNotAFontFile},
      {"cut in the directory.ttf", font.substr(0, 60), codes::kCorrupt},
      {"cut in the tables.ttf", font.substr(0, font.size() - 40), codes::kCorrupt},
      {"table far away.ttf", farTable, codes::kCorrupt},
      {"no tables.ttf", font.substr(0, 4) + std::string(20, '\0'), codes::kCorrupt},
      {"collection of millions.ttc", "ttcf" + std::string("\0\1\0\0\xFF\xFF\xFF\xFF", 8) + font,
       codes::kCorrupt},
      {"cut.pfa", FontBuilder().Type1().substr(0, 700), codes::kCorrupt},
      {"pfb of noise.pfb", "\x80\x01" + std::string(400, '\xA5'), codes::kNotAFontFile},
      {"nameless.ttf", nameless.TrueType(), codes::kCorrupt},
  };
  for (const auto& one : cases) {
    SCOPED_TRACE(one.name);
    EXPECT_EQ(Read(one.name, one.bytes, "copy").error(), one.error);
    EXPECT_FALSE(mFolder.Exists("copy"));
  }
  wire::ReaderJob job;
  job.set_path(mFolder.Path("nowhere.ttf"));
  EXPECT_EQ(mReader.Read(job).error(), codes::kFileNotFound);
  job.set_path(mFolder.Path());
  EXPECT_EQ(mReader.Read(job).error(), codes::kNotAFontFile) << "a folder";
  job.set_path("/dev/zero");
  EXPECT_EQ(mReader.Read(job).error(), codes::kNotAFontFile) << "no regular file";
}

TEST_F(FontFileReaderTest, NeverWritesOverAFile) {
  mFolder.Write("precious", "kept");
  EXPECT_EQ(Read("font.ttf", FontBuilder().TrueType(), "precious").error(), codes::kFileSystemError);
  EXPECT_EQ(mFolder.Read("precious"), "kept");
}

// Any one byte changed: an error or a record, and never the end of the process.
TEST_F(FontFileReaderTest, SurvivesEveryChangedByteOfASmallFont) {
  for (const std::string& font :
       {FontBuilder().TrueType(), FontBuilder().OpenType(), FontBuilder().Type1Segments()}) {
    for (size_t i = 0; i < font.size(); ++i) {
      std::string changed = font;
      changed[i] = static_cast<char>(changed[i] ^ 0xFF);
      const wire::ReadFile file = Read("changed", changed);
      ASSERT_TRUE(file.error() == 0 || file.error() == codes::kCorrupt ||
                  file.error() == codes::kNotAFontFile)
          << "byte " << i;
    }
  }
}

TEST(FontText, IsAlwaysFitForAMessage) {
  const uint8_t smile[] = {0xD8, 0x3D, 0xDE, 0x00, 0xD8, 0x3D, 0x00, 0x41};
  EXPECT_EQ(TextFromUtf16(smile),
            "\xF0\x9F\x98\x80"
            "A")
      << "half a pair is left out";
  EXPECT_EQ(TextFromAscii(std::string_view(" a\x01\xFF\0b ", 7)), "ab");
  EXPECT_EQ(PostScriptNameFrom("My (Font) [1]/x"), "MyFont1x");
  EXPECT_EQ(VersionFrom("Version 2.37"), "2.37");
  EXPECT_EQ(VersionFrom("VERSION: 1.5;x"), "1.5;x");
  EXPECT_EQ(VersionFrom("2.0 beta"), "2.0 beta");
}

TEST(KerningChecksumOfMetrics, DependsOnThePairsAlone) {
  const uint32_t pairs = KerningChecksum("KPX A V -70\nKPX A W -60\n");
  EXPECT_EQ(pairs, KerningChecksum("Comment x\r\n  KPX A W -60\r\nKPX A V -70"));
  EXPECT_NE(pairs, KerningChecksum("KPX A V -71\nKPX A W -60\n"));
  EXPECT_EQ(KerningChecksum("C 65 ; WX 500\n"), 0u);
}

}  // namespace
}  // namespace kiln
