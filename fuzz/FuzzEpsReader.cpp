// The reader of EPS comments. On any bytes it ends without an error, leaves the file as it was, gives records
// that all have a name, the same ones with and without GlyphMark data, asks the file for at most 64 times its
// length and 16 MiB, and leaves no object behind. The search for lines with a mark passes over none.
//
// Links: hornbeam_crossplugin
#include <algorithm>
#include <vector>

#include "FuzzSupport.h"
#include "Parsers/EPSLineReader.h"
#include "Parsers/EPSLineSearch.h"
#include "Parsers/FontParserEPS.h"
#include "support/FontRecords.h"

namespace {

const std::vector<LineMark> kMarks{{"%%DocumentFonts: "}, {"%%EndComments"}, {"/FontName /", true}};

bool HoldsMark(const std::string& line) {
  return std::any_of(kMarks.begin(), kMarks.end(), [&line](const LineMark& mark) {
    return mark.onlyAtStart ? line.starts_with(mark.text) : line.find(mark.text) != std::string::npos;
  });
}

// The offsets of all lines with a mark; without a search, by reading each line.
std::vector<int64_t> FindLines(const std::string& path, bool search, uint64_t* bytesFetched) {
  FileBuffer file;
  Promise(file.Open(path.c_str(), std::ios_base::in), "the file opens");
  EPSLineSearch lines(file, kMarks);
  std::vector<int64_t> found;
  std::string line;
  int64_t offset = 0;
  for (bool more = true; more;) {
    if (search) lines.SkipToNextLine();
    more = EPSLineReader::ReadNextLine(file, &line, &offset);
    if (HoldsMark(line)) found.push_back(offset);
  }
  *bytesFetched = file.BytesFetched();
  return found;
}

void Parse(const std::string& path) {
  const RetainPtr<CFStringRef> name = ToCFString(path);
  FontParserEPS parser(nullptr, name.get(), true);
  parser.Parse();
  Promise(parser.GetError() == 0, "reading is no error");
  const RetainPtr<CFMutableArrayRef> full = MakeArray();
  const RetainPtr<CFMutableArrayRef> names = MakeArray();
  CFMutableArrayRef target = full.get();
  parser.GetObsoleteGlyphmarkData(true, target);
  target = names.get();
  parser.GetObsoleteGlyphmarkData(false, target);
  const std::vector<std::string> found = FontNamesOf(full.get());
  Promise(found == FontNamesOf(names.get()), "the names are the same without GlyphMark data");
  Promise(std::none_of(found.begin(), found.end(), [](const std::string& one) { return one.empty(); }),
          "each record has a name");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const MemoryFile file(data, size);
  Parse(file.Path());
  uint64_t fetched = 0;
  const std::vector<int64_t> all = FindLines(file.Path(), false, &fetched);
  Promise(FindLines(file.Path(), true, &fetched) == all, "no line with a mark is passed over");
  Promise(fetched <= 64 * size + (16 << 20), "the file is read within bounds");
  Promise(file.Bytes() == std::string(reinterpret_cast<const char*>(data), size), "the file is as it was");
  Promise(LiveObjectCounts().empty(), "no object is left");
  return 0;
}
