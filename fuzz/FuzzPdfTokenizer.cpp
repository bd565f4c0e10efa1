// The tokenizer of the PDF reader. On any bytes it comes to the end with the error -1, in at most as many
// tokens as there are bytes, none longer than 256 characters, its place never goes back or behind the end,
// and the tokens don't depend on where a block of the file ends.
//
// The first byte says how many blanks the second reading has in front.
//
// Links: hornbeam_crossplugin
#include <string>
#include <vector>

#include "FuzzSupport.h"
#include "Memory/CFVector.h"
#include "Parsers/PDFObjectReader.h"

namespace {

class TokenReader : public PDFObjectReader {
 public:
  explicit TokenReader(const std::string& path) : PDFObjectReader(nullptr, ToCFString(path).get()) {
    Promise(OpenFile(), "the file opens");
  }
  void Parse() override {}
  void GetObsoleteGlyphmarkData(bool, CFMutableArrayRef&) override {}
  int Save() override { return 0; }

  std::vector<std::string> ReadTokens() {
    std::vector<std::string> tokens;
    int64_t position = 0;
    while (m_nError == 0) {
      tokens.push_back(ProcessToken());
      Promise(tokens.back().size() <= 256, "no token is longer than 256 characters");
      Promise(GetCurrentPosition() >= position && GetCurrentPosition() <= GetFileLength(),
              "the place moves on");
      position = GetCurrentPosition();
    }
    Promise(ProcessToken().empty() && ProcessLine().empty() && GetCurrentNumber() == 0,
            "nothing follows the end");
    if (!tokens.empty() && tokens.back().empty()) tokens.pop_back();
    return tokens;
  }

  // The other readers, in turn, as far as the file goes.
  void ReadAll() {
    for (unsigned i = 0; m_nError == 0; ++i) {
      const int64_t position = GetCurrentPosition();
      std::vector<PDFObject> objects;
      if (i % 6 == 0) ProcessObject(&objects);
      if (i % 6 == 1) SkipObject();
      if (i % 6 == 2) SkipMediaBox();
      if (i % 6 == 3) ReadID();
      if (i % 6 == 4) Promise(ProcessLine().size() <= 256, "no line is longer than 256 characters");
      if (i % 6 == 5) Promise(GetCurrentNumber() >= 0, "no number is negative");
      Promise(GetCurrentPosition() >= position, "the place doesn't go back");
    }
  }
};

std::vector<std::string> Tokens(const std::string& bytes) {
  const MemoryFile file(reinterpret_cast<const uint8_t*>(bytes.data()), bytes.size());
  TokenReader(file.Path()).ReadAll();
  return TokenReader(file.Path()).ReadTokens();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size == 0) return 0;
  const std::string bytes(reinterpret_cast<const char*>(data) + 1, size - 1);
  const std::vector<std::string> tokens = Tokens(bytes);
  Promise(tokens.size() <= bytes.size(), "there are at most as many tokens as bytes");
  Promise(Tokens(std::string(data[0], ' ') + bytes) == tokens, "blocks leave no trace");
  return 0;
}
