// Illustrator's private data, unpacked. On any stream the reader ends, keeps the fonts of the page, leaves no
// temporary file open and no object behind; and of data that were packed well it gives the fonts that the
// data have by themselves.
//
// The first byte says how the rest is packed: 0 packed by us behind the tag, 1 packed by us with the filter,
// 2 taken as packed already, 3 the same behind the tag, any other: not packed.
//
// Links: hornbeam_crossplugin ZLIB::ZLIB
// Sources: tests/support/PdfFixture.cpp
#include <algorithm>
#include <filesystem>
#include <memory>
#include <string>

#include "FuzzSupport.h"
#include "Parsers/FontParser.h"
#include "support/FontRecords.h"
#include "support/PdfFixture.h"

namespace {

constexpr const char* kTag = "%AI12_CompressedData";

std::vector<std::string> ReadNames(const std::string& bytes) {
  const MemoryFile file(reinterpret_cast<const uint8_t*>(bytes.data()), bytes.size());
  const std::unique_ptr<FontParser> parser(FontParser::CreateParserWithFile(
      ToCFString(file.Path()).get(), true, FontParser::GetDefaultSystemPathStyle()));
  if (!parser) return {};
  parser->Parse();
  CFMutableArrayRef fonts = nullptr;
  parser->GetObsoleteGlyphmarkData(false, fonts);
  return FontNamesOf(adoptCF(fonts).get());
}

// A page with the font "Page" and a private stream.
std::string FileWith(const std::string& filter, const std::string& stream) {
  std::string file = PdfPage("/Illustrator 4 0 R /Font << /F 6 0 R >>",
                             "4 0 obj\n<< /AIPrivateData2 5 0 R >>\nendobj\n"
                             "6 0 obj\n<< /BaseFont /Page >>\nendobj\n"
                             "5 0 obj\n<< /Length " +
                                 std::to_string(stream.size()) + filter + " >>\nstream\n");
  // Behind the table's objects, so that the marks of the text stay ours: the table is the last thing in it.
  const size_t table = file.find("\nxref\n");
  const std::string end = "\nendstream\nendobj" + file.substr(table);
  file.erase(table);
  const size_t offset = file.size() + stream.size() + 1 + std::string("\nendstream\nendobj").size();
  file += stream + end;
  file.erase(file.rfind("startxref"));
  return file + "startxref\n" + std::to_string(offset) + "\n%%EOF\n";
}

size_t OpenFiles() {
  const std::filesystem::directory_iterator files("/proc/self/fd");
  return static_cast<size_t>(std::distance(begin(files), end(files)));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size == 0) return 0;
  const size_t openFiles = OpenFiles();
  const std::string bytes(reinterpret_cast<const char*>(data) + 1, size - 1);
  const uint8_t packing = data[0];
  std::string file;
  switch (packing) {
    case 0:
      file = FileWith("", kTag + ZlibData(bytes));
      break;
    case 1:
      file = FileWith(" /Filter /FlateDecode", ZlibData(bytes));
      break;
    case 2:
      file = FileWith(" /Filter /FlateDecode", bytes);
      break;
    case 3:
      file = FileWith("", kTag + bytes);
      break;
    default:
      file = FileWith("", bytes);
      break;
  }
  const std::vector<std::string> names = ReadNames(file);
  Promise(!names.empty() && names.front() == "Page", "the fonts of the page stay");
  // What a PDF holds is found in another way inside; white space in front of plain data is lost.
  if (packing < 2 && bytes.find("%PDF") == std::string::npos) {
    std::vector<std::string> expected{"Page"};
    for (const std::string& name : ReadNames(bytes)) expected.push_back(name);
    // A name that is like the page's own is there already.
    Promise(names == expected || names.size() < expected.size(), "the data's own fonts are found");
  }
  Promise(OpenFiles() == openFiles, "no file stays open");
  Promise(LiveObjectCounts().empty(), "no object is left");
  return 0;
}
