#include <gtest/gtest.h>
#include <sys/stat.h>

#include <memory>

#include "Memory/CFVector.h"
#include "Parsers/FontParser.h"
#include "Parsers/FontParserEPS.h"
#include "Parsers/FontParserPDF.h"
#include "support/TemporaryFolder.h"

namespace {

enum Kind { kNone, kPDF, kEPS };

Kind KindOf(const std::string& path, bool readOnly = true) {
  const std::unique_ptr<FontParser> parser(FontParser::CreateParserWithFile(
      ToCFString(path).get(), readOnly, FontParser::GetDefaultSystemPathStyle()));
  if (dynamic_cast<FontParserPDF*>(parser.get()) != nullptr) return kPDF;
  return dynamic_cast<FontParserEPS*>(parser.get()) != nullptr ? kEPS : kNone;
}

std::string PaddedTo(const std::string& text, size_t length) {
  return text + std::string(length - text.size(), 'x');
}

TEST(FontParserTest, IsChosenByTheFirstBytes) {
  const struct {
    const char* name;
    std::string bytes;
    Kind expected;
  } rows[] = {
      {"marker at the start", "%PDF-1.4", kPDF},
      {"marker behind junk", PaddedTo("", 996) + "%PDF", kPDF},
      {"marker off the grid", PaddedTo("x%PDF", 500), kNone},
      {"marker off the grid in a long file", PaddedTo("x%PDF", 1000), kEPS},
      {"marker too far back", PaddedTo("", 1024) + "%PDF-1.4", kEPS},
      {"short EPS", PaddedTo("%!PS", 999), kNone},
      {"EPS", PaddedTo("%!PS", 1000), kEPS},
      {"anything of that length", PaddedTo("", 1000), kEPS},
      {"three bytes", "%PD", kNone},
      {"empty", "", kNone},
  };
  const TemporaryFolder folder;
  for (const auto& row : rows) EXPECT_EQ(KindOf(folder.Write("file", row.bytes)), row.expected) << row.name;
}

TEST(FontParserTest, NeedsAFileThatOpens) {
  const TemporaryFolder folder;
  EXPECT_EQ(KindOf(folder.Path("none")), kNone);
  EXPECT_EQ(KindOf(folder.MakeFolder("folder")), kNone);
  EXPECT_EQ(KindOf(""), kNone);
  ASSERT_EQ(mkfifo(folder.Path("pipe").c_str(), 0600), 0);
  EXPECT_EQ(KindOf(folder.Path("pipe")), kNone);
  EXPECT_EQ(FontParser::CreateParserWithFile(nullptr, true, kCFURLPOSIXPathStyle), nullptr);
  // A name of bytes outside ASCII.
  EXPECT_EQ(KindOf(folder.Write("S\xC3\xB6hne \xE5\xAD\x97.pdf", "%PDF-1.4")), kPDF);
}

TEST(FontParserTest, KnowsTheFirstWordsOfEpsFiles) {
  EXPECT_TRUE(IsMacEPS(0x53502125));
  EXPECT_FALSE(IsMacEPS(0x25215053));
  EXPECT_TRUE(IsWindowsEPS(0xC6D3D0C5L));
  EXPECT_TRUE(IsWindowsEPS(static_cast<int32_t>(0xC6D3D0C5)));  // as a 32-bit read extends its sign
  EXPECT_FALSE(IsWindowsEPS(0xC5D0D3C6L));
}

}  // namespace
