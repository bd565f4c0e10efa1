#include <gtest/gtest.h>

#include "Memory/CFVector.h"
#include "Parsers/PDFObjectReader.h"
#include "support/TemporaryFolder.h"

namespace {

// Made before the reader that opens it.
struct TokenFile {
  TemporaryFolder folder;
};

// The reader without the walk above it.
class TokenReader : private TokenFile, public PDFObjectReader {
 public:
  explicit TokenReader(std::string_view bytes)
      : PDFObjectReader(nullptr, ToCFString(folder.Write("tokens.pdf", bytes)).get()) {
    if (!OpenFile()) throw std::runtime_error("Can't open the file");
  }
  void Parse() override {}
  void GetObsoleteGlyphmarkData(bool, CFMutableArrayRef&) override {}
  int Save() override { return 0; }

  using PDFObjectReader::GetCurrentNumber;
  using PDFObjectReader::GetCurrentPosition;
  using PDFObjectReader::IsNumber;
  using PDFObjectReader::ProcessLine;
  using PDFObjectReader::ProcessObject;
  using PDFObjectReader::ProcessToken;
  using PDFObjectReader::ReadID;
  using PDFObjectReader::SkipMediaBox;
  using PDFObjectReader::SkipObject;
  using PDFObjectReader::StripPDFFontName;

  // All tokens up to the end; "" at a backslash.
  std::vector<std::string> Tokens() {
    std::vector<std::string> tokens;
    while (GetError() == 0) tokens.push_back(ProcessToken());
    if (!tokens.empty() && tokens.back().empty()) tokens.pop_back();
    return tokens;
  }

  std::string Objects() {
    std::vector<PDFObject> objects;
    ProcessObject(&objects);
    std::string text;
    for (const PDFObject& object : objects) {
      text += (text.empty() ? "" : " ") + std::to_string(object.nObjectNumber) + "," +
              std::to_string(object.nGenerationNumber) + (object.bIsReference ? "R" : "");
    }
    return text;
  }
};

using Tokens = std::vector<std::string>;

const struct {
  const char* name;
  std::string text;
  Tokens tokens;
} kTokens[] = {
    {"a dictionary", "<< /Type /Page >>", {"<<", "/Type", "/Page", ">>"}},
    {"without blanks",
     "<</A/B[1 0 R]/C(x)>>",
     {"<<", "/A", "/B", "[", "1", "0", "R", "]", "/C", "(", "x", ")", ">>"}},
    {"a reference with a name behind it", "5 0 R/Name", {"5", "0", "R", "/Name"}},
    {"an empty array", "[]", {"[", "]"}},
    {"a hex string", "<48>", {"<", "48", ">"}},
    {"angles that don't pair", "<><", {"<", ">", "<"}},
    {"an escaped name", "/Foo#20Bar x", {"/Foo Bar", "x"}},
    {"escaped delimiters stay in the name", "/A#2FB#5B#28 x", {"/A/B[(", "x"}},
    {"a bad escape", "/A#ZZ/B#4", {"/A#ZZ", "/B#4"}},
    {"an escape outside a name", "A#20B", {"A#20B"}},
    {"white space of each kind", "a\tb\rc\nd\r\ne \t\r\n f", {"a", "b", "c", "d", "e", "f"}},
    {"a backslash ends a token", "ab\\cd", {"ab", "cd"}},
    {"a backslash alone", "\\ x", {"", "x"}},
    {"a comment isn't known", "1%c\n2", {"1%c", "2"}},
    {"slashes", "//A", {"/", "/A"}},
    {"a long name",
     "/" + std::string(299, 'a') + " b",
     {"/" + std::string(255, 'a'), std::string(44, 'a'), "b"}},
};

TEST(PdfTokens, AreTheSameWhereverABlockEnds) {
  for (const auto& row : kTokens) {
    for (int blanks = 0; blanks <= 260; blanks += blanks < 200 ? 50 : 1) {
      TokenReader reader(std::string(static_cast<size_t>(blanks), ' ') + row.text + " ");
      Tokens tokens = reader.Tokens();
      EXPECT_EQ(tokens, row.tokens) << row.name << " behind " << blanks << " blanks";
    }
  }
}

TEST(PdfTokens, EndWithTheFileAtEveryByte) {
  const std::string text = "<< /A#41/B [ 12 0 R ] (x\\y) >>\r\n/Long" + std::string(600, 'n');
  for (size_t length = 1; length <= text.size(); ++length) {
    TokenReader reader(text.substr(0, length));
    EXPECT_LE(reader.Tokens().size(), length) << length;
    EXPECT_EQ(reader.GetError(), -1) << length;
    EXPECT_EQ(reader.ProcessToken(), "");
    EXPECT_LE(reader.GetCurrentPosition(), static_cast<int64_t>(length)) << length;
  }
}

TEST(PdfTokens, NumbersAreDigitsThatFit) {
  const auto valueOf = [](const char* text) {
    int64_t value = -7;
    return TokenReader::IsNumber(text, &value) ? value : -1;
  };
  EXPECT_EQ(valueOf(""), 0);
  EXPECT_EQ(valueOf("0012"), 12);
  EXPECT_EQ(valueOf("4294967296"), 4294967296);
  for (const char* text : {"-1", "+1", "1.5", "1x", "99999999999999999999"})
    EXPECT_EQ(valueOf(text), -1) << text;
}

TEST(PdfTokens, FontNamesBecomePostScriptNames) {
  const std::pair<const char*, const char*> rows[] = {{"/ABCDEF+Foo,Bold", "Foo-Bold"},
                                                      {"Foo", "Foo"},
                                                      {"/", ""},
                                                      {"//Foo", "/Foo"},
                                                      {"/A+B+C", "C"},
                                                      {"/A,B+C,D", "C-D"},
                                                      {"/X+AdobeCorpID-Foo", "Foo"},
                                                      {"/Foo+", ""}};
  for (const auto& [pdf, postScript] : rows) EXPECT_EQ(TokenReader::StripPDFFontName(pdf), postScript) << pdf;
}

TEST(PdfTokens, ObjectsAreReadAloneAndInArrays) {
  const struct {
    const char* name;
    const char* text;
    const char* objects;
    const char* nextToken;
  } rows[] = {
      {"a reference", "4 0 R next ", "4,0R", "next"},
      {"a list", "[4 0 R 5 1 R] next ", "4,0R 5,1R", "next"},
      {"an empty list", "[ ] next ", "", "next"},
      {"no reference", "4 0 obj next ", "4,0", "next"},
      {"a name costs three tokens", "/Foo /Bar /Baz next ", "0,0", "next"},
      {"a list that never ends", "[4 0 R 5 0 R endobj next ", "4,0R 5,0R", "next"},
      {"a list that breaks off", "[4 0 R 5 endobj next ", "4,0R", "next"},
      {"a list of nothing", "[ endobj next ", "", "next"},
      {"a number beyond 32 bits", "4294967297 0 R next ", "0,0R", "next"},
  };
  for (const auto& row : rows) {
    TokenReader reader(row.text);
    EXPECT_EQ(reader.Objects(), row.objects) << row.name;
    EXPECT_EQ(reader.ProcessToken(), row.nextToken) << row.name;
  }
}

TEST(PdfTokens, ValuesAreSkipped) {
  using Skip = void (*)(TokenReader&);
  const auto nextToken = [](const char* text, Skip skip) {
    TokenReader reader(text);
    skip(reader);
    return reader.ProcessToken();
  };
  const Skip object = [](TokenReader& reader) { reader.SkipObject(); };
  const Skip box = [](TokenReader& reader) { reader.SkipMediaBox(); };
  EXPECT_EQ(nextToken("/Word next ", object), "next");
  EXPECT_EQ(nextToken("<< /A [1 (x)] /B << >> >> next ", object), "next");
  EXPECT_EQ(nextToken("[0 0 10.5 20] next ", box), "next");
  EXPECT_EQ(nextToken("9 0 R ", box), "0") << "of a reference one token";
  EXPECT_EQ(nextToken("[<00ff><00ff>]next ", [](TokenReader& reader) { reader.ReadID(); }), "next");
  EXPECT_EQ(nextToken("/A /B\r\nnext ", [](TokenReader& reader) { reader.ProcessLine(); }), "next");
}

}  // namespace
