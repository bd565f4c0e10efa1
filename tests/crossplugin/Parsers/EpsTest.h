#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "Parsers/FontParserEPS.h"
#include "support/EpsFixture.h"
#include "support/FontRecords.h"
#include "support/TemporaryFolder.h"

/// EPS files on disk, parsed.
class EpsTest : public testing::Test {
 protected:
  std::unique_ptr<FontParserEPS> Parse(std::string_view bytes, bool readOnly = true) {
    m_folder.Write("test.eps", bytes);
    return ParseAgain(readOnly);
  }

  std::unique_ptr<FontParserEPS> ParseAgain(bool readOnly = true) const {
    auto parser =
        std::make_unique<FontParserEPS>(nullptr, ToCFString(m_folder.Path("test.eps")).get(), readOnly);
    parser->Parse();
    EXPECT_EQ(parser->GetError(), 0);
    return parser;
  }

  static RetainPtr<CFMutableArrayRef> FontsOf(FontParser& parser, bool wantGlyphMark = true) {
    CFMutableArrayRef fonts = nullptr;
    parser.GetObsoleteGlyphmarkData(wantGlyphMark, fonts);
    return adoptCF(fonts);
  }

  static std::vector<std::string> NamesOf(FontParser& parser) { return FontNamesOf(FontsOf(parser).get()); }

  std::string File() const { return m_folder.Read("test.eps"); }

  TemporaryFolder m_folder;
};
