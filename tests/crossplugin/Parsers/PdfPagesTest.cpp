#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "PdfFonts.h"
#include "support/PdfFixture.h"

namespace {

using testing::ElementsAre;

// Font objects 10 to 14, named after their numbers.
const std::string kFonts =
    "10 0 obj\n<< /BaseFont /Ten >>\nendobj\n11 0 obj\n<< /BaseFont /Eleven >>\nendobj\n"
    "12 0 obj\n<< /BaseFont /Twelve >>\nendobj\n13 0 obj\n<< /BaseFont /Thirteen >>\nendobj\n";

const std::string kFont11 = " /Font << /F2 11 0 R >>";

TEST(PdfPages, ResourcesOfAPageAreWalked) {
  const struct {
    const char* name;
    std::string keys;
    const char* names;
    const char* object5 = "";
  } rows[] = {
      {"direct", "/Resources << /ProcSet [/PDF] /Font << /F1 10 0 R /F2 11 0 R >> >>", "Ten Eleven"},
      {"keys behind", "/Resources << /Font << /F1 10 0 R >> /XObject << >> >>" + kFont11, "Ten Eleven"},
      {"a reference", "/Resources 5 0 R" + kFont11, "Ten Eleven", "<< /Font << /F1 10 0 R >> >>"},
      {"no blanks", "/Resources 5 0 R/Font<</F2 11 0 R>>", "Ten Eleven", "<</Font<</F1 10 0 R>>>>"},
      {"no whole reference", "/Resources 5 0 X" + kFont11, "Eleven"},
      {"a reference to nothing", "/Resources 99 0 R" + kFont11, "Eleven"},
      {"a reference to itself", "/Resources 5 0 R" + kFont11, "Eleven", "5 0 R"},
      {"a ring", "/Resources 5 0 R" + kFont11, "Eleven", "6 0 R\nendobj\n6 0 obj\n5 0 R"},
      {"an indirect font dictionary", "/Resources << /Font 5 0 R >>", "", "<< /F1 10 0 R >>"},
      {"a pattern hides its line", "/Resources << /Pattern 5 0 R /Font << /F1 10 0 R >>\n >>" + kFont11,
       "Eleven"},
      {"a nested procedure set", "/Resources << /ProcSet [[/A] /B]" + kFont11 + " >>", "Eleven"},
      {"skipped values", "/Resources << /Properties << /Font << /F1 10 0 R >> >>" + kFont11 + " >>",
       "Eleven"},
      {"boxes", "/MediaBox [0 0 1 1] /CropBox 9 0 R /Rotate 90" + kFont11, "Eleven"},
      {"the same font twice", "/Font << /F1 10 0 R /F2 10 0 R /F3 11 0 R >>", "Ten Eleven"},
      {"an array of fonts", "/Font << /F1 [10 0 R 11 0 R] >>", "Ten Eleven"},
      {"another generation", "/Font << /F1 10 1 R /F2 11 0 R >>", "Eleven"},
  };
  for (const auto& row : rows) {
    const PdfFonts fonts =
        ReadPdf(PdfPage(row.keys, "5 0 obj\n" + std::string(row.object5) + "\nendobj\n" + kFonts));
    EXPECT_EQ(Joined(fonts.names), row.names) << row.name;
    EXPECT_EQ(fonts.error, 0) << row.name;
  }
}

// Catalog 1 and page tree 2 with pages 3 to 6, each with a font of its own.
std::string TreeFile(const std::string& root, const std::string& nodes) {
  return ExpandPdf("%PDF-1.4\n1 0 obj\n<< /Type /Catalog /Pages 2 0 R >>\nendobj\n2 0 obj\n" + root +
                   "\nendobj\n" + nodes + kFonts + "{{xref}}trailer << /Root 1 0 R >>\n{{startxref}}");
}

std::string Page(int number, int font) {
  return std::to_string(number) + " 0 obj\n<< /Type /Page /Parent 2 0 R /Font << /F " + std::to_string(font) +
         " 0 R >> >>\nendobj\n";
}

TEST(PdfPages, TheTreeIsWalked) {
  const std::string pages = Page(3, 10) + Page(4, 11) + Page(5, 12);
  const struct {
    const char* name;
    const char* root;
    const char* names;
    const char* node6 = "";
  } rows[] = {
      {"all kids of the root", "/Kids [3 0 R 4 0 R 5 0 R] /Count 3", "Ten Eleven Twelve"},
      {"as many as it counts", "/Kids [3 0 R 4 0 R 5 0 R] /Count 2", "Ten Eleven"},
      {"a count of none", "/Kids [3 0 R]", ""},
      {"the first kid of a node", "/Count 9 /Kids [6 0 R 5 0 R]", "Twelve Ten",
       "/Type /Pages /Kids [3 0 R 4 0 R]"},
      {"kids behind", "/Count 9 /Kids [6 0 R]", "Eleven",
       "/Count 2 /Parent 2 0 R /Type /Pages /Rotate 0 /Kids [4 0 R]"},
      {"no kids", "/Kids [ ] /Count 1 /Font << /F 13 0 R >>", "Thirteen"},
      {"a kid twice", "/Kids [3 0 R 3 0 R 4 0 R] /Count 3", "Ten Eleven"},
      {"a kid that is missing", "/Kids [99 0 R 4 0 R] /Count 2", "Eleven"},
      {"resources behind the type aren't seen", "/Kids [6 0 R] /Count 1", "Ten",
       "/Type /Page /Resources << /XObject << >> >> /Font << /F 10 0 R >>"},
      {"fonts behind the type neither", "/Kids [6 0 R] /Count 1", "", "/Type /Page /Font << /F 10 0 R >>"},
  };
  for (const auto& row : rows) {
    std::string nodes = pages;
    nodes.append("6 0 obj\n<< ").append(row.node6).append(" >>\nendobj\n");
    const std::string root = "<< " + std::string(row.root) + " >>";
    EXPECT_EQ(Joined(ReadPdf(TreeFile(root, nodes)).names), row.names) << row.name;
  }
}

TEST(PdfPages, LoopsAndGreatCountsEnd) {
  const char* kHuge = "<< /Kids [3 0 R 4 0 R] /Count 2147483647 >>";
  const std::string self = "3 0 obj\n<< /Type /Pages /Kids [3 0 R] >>\nendobj\n";
  EXPECT_THAT(ReadPdf(TreeFile(kHuge, self + Page(4, 11))).names, ElementsAre("Eleven"));
  const std::string back = "3 0 obj\n<< /Type /Pages /Kids [2 0 R] >>\nendobj\n";
  EXPECT_THAT(ReadPdf(TreeFile(kHuge, back + Page(4, 11))).names, ElementsAre("Eleven"));
}

TEST(PdfPages, AChainOfResourcesIsFollowedToADepthOf32) {
  for (const bool tooDeep : {false, true}) {
    std::string objects;
    const int last = tooDeep ? 52 : 51;
    for (int i = 20; i < last; ++i) {
      objects += std::to_string(i) + " 0 obj\n" + std::to_string(i + 1) + " 0 R\nendobj\n";
    }
    objects += std::to_string(last) + " 0 obj\n<< /Font << /F 10 0 R >> >>\nendobj\n";
    const PdfFonts fonts = ReadPdf(PdfPage("/Resources 20 0 R /Font << /F 11 0 R >>", objects + kFonts));
    EXPECT_EQ(fonts.names, tooDeep ? Names{"Eleven"} : (Names{"Ten", "Eleven"}));
  }
}

// Every object runs to the end of the file, for each of many kids.
TEST(PdfPages, AFileThatMakesItsReaderReadTooMuchIsAnError) {
  std::string kids;
  std::string objects;
  for (int i = 100; i < 1100; ++i) {
    kids += std::to_string(i) + " 0 R ";
    objects += std::to_string(i) + " 0 obj\n<< /Rotate 0\n";
  }
  const PdfFonts fonts =
      ReadPdf(TreeFile("<< /Count 1000 /Kids [3 0 R " + kids + "] /Font << /F 10 0 R >> >>",
                       Page(3, 10) + objects + "{{fill 200000}}"));
  EXPECT_EQ(fonts.error, -1);
  EXPECT_THAT(fonts.notes, ElementsAre("damaged"));
}

TEST(PdfPages, TruncationAtEveryByteKeepsWhatWasFound) {
  const std::string file =
      TreeFile("<< /Kids [3 0 R 4 0 R 5 0 R] /Count 3 >>", Page(3, 10) + Page(4, 11) + Page(5, 12));
  const size_t bodyEnd = file.find("xref\n");
  const std::string table = file.substr(bodyEnd, file.find("startxref") - bodyEnd);
  const TemporaryFolder folder;
  size_t atMost = 0;
  for (size_t length = 8; length < file.size(); ++length) {
    const std::string cut = file.substr(0, length);
    EXPECT_LE(ReadPdfFile(folder.Write("cut.pdf", cut)).names.size(), 3U) << length;
    if (length > bodyEnd) continue;
    // The same with the whole table behind it, which leads to objects that broke off.
    std::string whole = cut;
    whole.append("\n")
        .append(table)
        .append("startxref\n")
        .append(std::to_string(length + 1))
        .append("\n%%EOF");
    const PdfFonts fonts = ReadPdfFile(folder.Write("cut.pdf", whole));
    atMost = std::max(atMost, fonts.names.size());
    EXPECT_LE(fonts.names.size(), 3U) << length;
  }
  EXPECT_EQ(atMost, 3U);
}

}  // namespace
