#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

#include "PdfFonts.h"
#include "support/PdfFixture.h"
#include "support/ScopedEnvironment.h"

namespace {

using testing::Contains;
using testing::ElementsAre;

// Artwork as Illustrator writes it, long enough to be taken for an EPS.
const std::string kArtwork =
    "%!PS-Adobe-3.0 \n%%Creator: Adobe Illustrator(R) 16.0\n%%DocumentFonts: Art-Regular\n%%+ Art-Bold\n"
    "%%EndComments\n" +
    std::string(1000, '%') + "\n";

// A page whose font is "Page" and whose private data is object 6, in dictionary 5.
std::string FileWithData(const std::string& dataObject,
                         const std::string& privateKeys = "/AIPrivateData2 6 0 R") {
  return PdfPage("/PieceInfo << /Illustrator 4 0 R >> /Font << /F 7 0 R >>",
                 "4 0 obj\n<< /Private 5 0 R >>\nendobj\n5 0 obj\n<< " + privateKeys +
                     " >>\nendobj\n"
                     "6 0 obj\n" +
                     dataObject + "\nendobj\n7 0 obj\n<< /BaseFont /Page >>\nendobj\n");
}

std::string Stream(const std::string& keys, const std::string& data) {
  return "<< " + keys + " >>\nstream\n" + data + "\nendstream";
}

std::string LengthKey(const std::string& data) {
  return "/Length " + std::to_string(data.size());
}

const std::string kFlate = "{{flate}}" + kArtwork + "{{end}}";

TEST(IllustratorData, IsUnpackedByTagAndFilter) {
  const struct {
    const char* name;
    std::string stream;
    bool isRead;
  } rows[] = {
      {"the tag without a filter", Stream("", "%AI12_CompressedData" + kFlate), true},
      {"the tag with another filter", Stream("/Filter /LZWDecode", "%AI12_CompressedData" + kFlate), true},
      {"Flate", Stream("/Length 9 /Filter /FlateDecode", kFlate), true},
      {"Flate as the last of several", Stream("/Filter [/ASCII85Decode /FlateDecode]", kFlate), true},
      {"Flate before another", Stream("/Filter [/FlateDecode /ASCII85Decode]", kFlate), false},
      {"data that aren't Flate", Stream("/Filter /FlateDecode", kArtwork), false},
      {"another filter", Stream("/Filter /LZWDecode", kArtwork), false},
      {"plain", Stream(LengthKey(kArtwork), kArtwork), true},
      {"plain, too short to be a file", Stream("/Length 400", kArtwork), false},
      {"plain, longer than the file", Stream("/Length 400000", kArtwork), false},
      {"plain, of a length elsewhere", Stream("/Length 8 0 R", kArtwork), false},
      {"no stream", "<< /Length 3 >>", false},
  };
  for (const auto& row : rows) {
    const PdfFonts fonts = ReadPdf(FileWithData(row.stream));
    EXPECT_EQ(fonts.names, row.isRead ? (Names{"Page", "Art-Regular", "Art-Bold"}) : Names{"Page"})
        << row.name;
    EXPECT_EQ(fonts.sources.back(), row.isRead ? EFontSource::kIllustratorData : EFontSource::kPageResources)
        << row.name;
  }
}

TEST(IllustratorData, DamagedDataCountAsFarAsTheyGo) {
  std::string data = ZlibData(kArtwork + std::string(400000, 'x'));
  data.resize(data.size() / 2);
  EXPECT_THAT(ReadPdf(FileWithData(Stream("", "%AI12_CompressedData" + data))).names, Contains("Art-Bold"));
}

TEST(IllustratorData, ReferencesThatLeadNowhereEnd) {
  const std::string data = Stream("/Filter /FlateDecode", kFlate);
  const struct {
    const char* name;
    std::string keys;
    bool isRead;
  } rows[] = {
      {"to itself", "/Private 5 0 R /AIPrivateData2 6 0 R", false},
      {"in a ring", "/Private 4 0 R", false},
      {"to nothing", "/Private 99 0 R /AIPrivateData2 6 0 R", false},
      {"the other parts of the data aren't followed", "/AIPrivateData1 99 0 R /AIPrivateData2 6 0 R", true},
      {"to two objects", "/AIPrivateData2 [7 0 R 7 0 R] /AIPrivateData2 6 0 R", true},
      {"first success wins", "/AIPrivateData2 6 0 R /AIPrivateData2 99 0 R", true},
  };
  for (const auto& row : rows) {
    const PdfFonts fonts = ReadPdf(FileWithData(data, row.keys));
    EXPECT_EQ(fonts.names.size() == 3, row.isRead) << row.name;
  }
}

TEST(IllustratorData, APdfInsideMayNotHoldPrivateDataAgain) {
  const std::string inner = PdfPage("/Illustrator 4 0 R /Font << /F 6 0 R >>",
                                    "4 0 obj\n<< /AIPrivateData2 5 0 R >>\nendobj\n5 0 obj\n" +
                                        Stream("", "%AI12_CompressedData" + kFlate) +
                                        "\nendobj\n6 0 obj\n<< /BaseFont /Inner >>\nendobj\n{{fill 1000}}\n");
  EXPECT_THAT(ReadPdf(inner).names, ElementsAre("Inner", "Art-Regular", "Art-Bold"));
  const std::string outer = FileWithData(Stream("", "%AI12_CompressedData" + ZlibData(inner)));
  EXPECT_THAT(ReadPdf(outer).names, ElementsAre("Page", "Inner"));
}

TEST(IllustratorData, LeavesNoFileAndIsNotReadWithoutAPlaceForIt) {
  const TemporaryFolder elsewhere;
  const std::string path = elsewhere.Write("a.ai", FileWithData(Stream("/Filter /FlateDecode", kFlate)));
  {
    const TemporaryFolder temporary;
    const ScopedEnvironment folder("TMPDIR", temporary.Path());
    EXPECT_THAT(ReadPdfFile(path).names, Contains("Art-Bold"));
    EXPECT_TRUE(std::filesystem::is_empty(temporary.Path()));
  }
  const ScopedEnvironment folder("TMPDIR", elsewhere.Path("nowhere"));
  EXPECT_THAT(ReadPdfFile(path).names, ElementsAre("Page"));
}

}  // namespace
