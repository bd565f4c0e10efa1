#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <optional>
#include <random>

#include "Parsers/XREFTable.h"
#include "PdfFonts.h"
#include "support/PdfFixture.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

// One page with one font, "Found", behind `beforeFile`, with what comes behind the objects left open.
std::string FileWith(const std::string& end, const std::string& beforeFile = "") {
  return ExpandPdf(
      beforeFile +
      "%PDF-1.4\n1 0 obj\n<< /Pages 2 0 R >>\nendobj\n2 0 obj\n<< /Kids [3 0 R] /Count 1 >>\nendobj\n"
      "3 0 obj\n<< /Resources << /Font << /F1 4 0 R >> >> >>\nendobj\n"
      "4 0 obj\n<< /BaseFont /Found >>\nendobj\n" +
      end);
}

const std::string kTrailer = "trailer << /Size 5 /Root 1 0 R >>\n";

TEST(PdfCrossReference, FindsTheTable) {
  const std::string table = "{{xref}}" + kTrailer;
  const struct {
    const char* name;
    std::string end;
    const char* names = "Found";
    const char* before = "";
  } rows[] = {
      {"plain", table + "{{startxref}}"},
      {"behind 20 bytes of junk", table + "{{startxref}}", "Found", "12345678901234567890"},
      {"junk with a % in it", table + "{{startxref}}", "Found", "%!xx\n%12345\n"},
      {"lines end in CR", "{{xref}}\r" + kTrailer + "\rstartxref\r{{xref-offset}}\r%%EOF"},
      {"too far from the end", table + "{{startxref}}{{fill 100}}", ""},
      {"a zero byte before it in the tail", table + "{{fill 40}}{{hex 00}}{{startxref}}", ""},
      {"no keyword", table, ""},
      {"beyond the end", table + "startxref\n99999999\n%%EOF", ""},
      {"a number that doesn't fit", table + "startxref\n99999999999999999999\n%%EOF", ""},
      {"near the largest number", table + "startxref\n9223372036854775807\n%%EOF", "", "junk"},
      {"brackets close up", "{{xref}}trailer<</Size 5/Root 1 0 R/ID[<00><00>]>>{{startxref}}"},
      {"more entries promised than there are",
       "{{mark t}}xref\n1 2147483647\n0000000009 00000 n \n" + kTrailer + "startxref\n{{offset t}}\n%%EOF",
       ""},
  };
  for (const auto& row : rows)
    EXPECT_EQ(Joined(ReadPdf(FileWith(row.end, row.before)).names), row.names) << row.name;
}

// Some producers count from a place up to three bytes in front of the file.
TEST(PdfCrossReference, AcceptsOffsetsThatAreALittleTooLarge) {
  const std::string plain = FileWith("{{xref}}" + kTrailer + "{{startxref}}");
  const std::string objects = plain.substr(8, plain.find("xref\n0 1") - 8);
  for (size_t tooLarge = 0; tooLarge < 5; ++tooLarge) {
    // Written for a header that is longer by some blanks, which then go.
    std::string file = "%PDF-1.4";
    file.append(tooLarge, ' ').append(objects).append("{{xref}}").append(kTrailer).append("{{startxref}}");
    file = ExpandPdf(file);
    file.erase(8, tooLarge);
    EXPECT_EQ(ReadPdf(file).names, tooLarge < 4 ? Names{"Found"} : Names{}) << tooLarge;
  }
}

TEST(PdfCrossReference, NewerTablesHideOlderOnes) {
  const std::string update =
      "4 0 obj\n<< /BaseFont /Newer >>\nendobj\n{{xref}}"
      "trailer << /Root 1 0 R /Prev {{offset old}} >>\n{{startxref}}";
  const PdfFonts fonts =
      ReadPdf(FileWith("{{mark old}}{{xref}}trailer << /Root 99 0 R >>\n{{startxref}}" + update));
  EXPECT_THAT(fonts.names, ElementsAre("Newer"));
  EXPECT_THAT(fonts.notes, IsEmpty());
}

TEST(PdfCrossReference, AChainOfTablesThatLoopsEnds) {
  const PdfFonts fonts =
      ReadPdf(FileWith("{{xref}}trailer << /Root 1 0 R /Prev {{xref-offset}} >>\n{{startxref}}"));
  EXPECT_THAT(fonts.names, ElementsAre("Found"));
}

TEST(PdfCrossReference, ABadEntryIsNotThere) {
  // The third object is said to lie outside the file, or where another one is; the walk goes on without it.
  for (const char* offset : {"0000099999", "0000000009", "9999999999999999999999"}) {
    const std::string file = FileWith(
        std::string("5 0 obj\n<< /Pages 2 0 R /Metadata 3 0 R >>\nendobj\n{{mark t}}{{xref}}xref\n3 1\n") +
        offset + " 00000 f \n" + kTrailer + "{{startxref}}");
    EXPECT_EQ(ReadPdf(file).error, 0) << offset;
  }
  // A free entry is followed like any other.
  std::string file = FileWith("{{xref}}" + kTrailer + "{{startxref}}");
  for (size_t at = file.find(" n \n"); at != std::string::npos; at = file.find(" n \n")) file[at + 1] = 'f';
  EXPECT_THAT(ReadPdf(file).names, ElementsAre("Found"));
}

TEST(PdfCrossReference, NotesWhatAUserShouldKnow) {
  const struct {
    const char* name;
    std::string end;
    Names notes;
  } rows[] = {
      {"nothing", "{{xref}}" + kTrailer + "{{startxref}}", {}},
      {"encrypted", "{{xref}}trailer << /Root 1 0 R /Encrypt 9 0 R >>{{startxref}}", {"encrypted"}},
      {"encrypted, told at once",
       "{{xref}}trailer << /Root 1 0 R /Encrypt << /V 1 >> >>{{startxref}}",
       {"encrypted"}},
      {"a cross-reference stream",
       "{{mark s}}5 0 obj\n<< /Type /XRef >>\nstream\nstartxref\n{{offset s}}\n%%EOF",
       {"cross-reference stream", "no catalog"}},
      {"no table", "", {"no catalog", "damaged"}},
      {"no root", "{{xref}}trailer << >>{{startxref}}", {"no catalog"}},
  };
  for (const auto& row : rows) EXPECT_EQ(ReadPdf(FileWith(row.end)).notes, row.notes) << row.name;
}

// The table answers as a walk over its sections would.
TEST(XREFTable, TheFirstSectionThatCoversANumberCounts) {
  std::mt19937 random(7);
  for (int round = 0; round < 200; ++round) {
    XREFTable table;
    std::vector<std::pair<int, std::vector<int>>> sections;
    int offset = 1;
    for (int i = 0; i < 12; ++i) {
      sections.push_back({static_cast<int>(random() % 30), {}});
      table.BeginSection(sections.back().first);
      for (unsigned n = random() % 8; n > 0; --n) {
        sections.back().second.push_back(offset);
        table.AddEntry(offset++, 0, true);
      }
    }
    for (int number = 0; number < 45; ++number) {
      std::optional<int> expected;
      for (const auto& [first, offsets] : sections) {
        if (expected || number < first || number >= first + static_cast<int>(offsets.size())) continue;
        expected = offsets[static_cast<size_t>(number - first)];
      }
      const auto entry = table.Find(number);
      ASSERT_EQ(entry.has_value(), expected.has_value()) << number;
      if (!entry) continue;
      EXPECT_EQ(static_cast<int>(table.At(*entry).nOffset), *expected) << number;
    }
  }
}

TEST(XREFTable, NumbersNearTheLimit) {
  XREFTable table;
  table.BeginSection(2147483646);
  for (int i = 0; i < 5; ++i) table.AddEntry(10 + i, 70000, i != 0);
  table.BeginSection(4294967296);
  table.AddEntry(99, 0, true);
  table.BeginSection(5);
  table.AddEntry(INT64_MAX, 0, true);
  EXPECT_EQ(table.At(table.Find(2147483647).value()).nOffset, 11U);
  EXPECT_FALSE(table.Find(0));
  EXPECT_EQ(table.At(table.Find(5).value()).nOffset, 0U) << "no object lies at 0";
}

}  // namespace
