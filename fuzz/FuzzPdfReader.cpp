// The reader of PDF files, whole. On any bytes it ends with the error 0 or -1, leaves the file as it was,
// gives the same names with and without GlyphMark data, notes nothing but what is documented, asks the file
// for at most 64 times its length and 16 MiB, and leaves no object behind.
//
// The input is a file or, where it has marks, the text of one (tests/support/PdfFixture.h), so that a change
// to it doesn't tear all offsets apart.
//
// Links: hornbeam_crossplugin ZLIB::ZLIB
// Sources: tests/support/PdfFixture.cpp
#include <algorithm>
#include <set>
#include <string>

#include "FuzzSupport.h"
#include "Parsers/FontParserPDF.h"
#include "support/FontRecords.h"
#include "support/PdfFixture.h"

namespace {

// Lets the count of bytes be seen.
class Parser : public FontParserPDF {
 public:
  explicit Parser(const std::string& path) : FontParserPDF(nullptr, ToCFString(path).get()) {}
  uint64_t BytesFetched() { return m_file.stream.Buffer().BytesFetched(); }
};

std::vector<std::string> ReadNames(Parser& parser, bool bWantGlyphMark) {
  CFMutableArrayRef fonts = nullptr;
  parser.GetObsoleteGlyphmarkData(bWantGlyphMark, fonts);
  return FontNamesOf(adoptCF(fonts).get());
}

void Read(const std::string& bytes) {
  const MemoryFile file(reinterpret_cast<const uint8_t*>(bytes.data()), bytes.size());
  Parser parser(file.Path());
  parser.Parse();
  Promise(parser.GetError() == 0 || parser.GetError() == -1, "the error is 0 or -1");
  Promise(ReadNames(parser, true) == ReadNames(parser, false),
          "the names are the same without GlyphMark data");
  static const std::set<std::string> kNotes{"encrypted", "cross-reference stream", "no catalog", "damaged"};
  for (const std::string& note : parser.GetNotes())
    Promise(kNotes.count(note) == 1, "the note is documented");
  // The last jump before the limit may fetch one read-ahead more.
  Promise(parser.BytesFetched() <= 64 * bytes.size() + (16 << 20) + (256 << 10),
          "the file is read within bounds");
  Promise(file.Bytes() == bytes, "the file is as it was");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  std::string bytes(reinterpret_cast<const char*>(data), size);
  if (bytes.find("{{") != std::string::npos) {
    try {
      bytes = ExpandPdf(bytes);
    } catch (const std::exception&) {
      // Read as it stands.
    }
  }
  Read(bytes);
  Promise(LiveObjectCounts().empty(), "no object is left");
  return 0;
}
