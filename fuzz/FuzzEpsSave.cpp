// Saving into an EPS file, and reading it back. On any bytes a save either fails and leaves the file as it
// was, or the file is the old one with exactly the block in it and, behind a DOS header, two fields changed.
// It is read back where "%%EndComments" stands alone on its line and no embedded subset can swallow it.
//
// Links: hornbeam_crossplugin
#include <algorithm>
#include <vector>

#include "FuzzSupport.h"
#include "Parsers/EPSLineReader.h"
#include "Parsers/FontParserEPS.h"
#include "support/FontRecords.h"

namespace {

const char* const kNames[] = {"HornbeamFuzz-Roman", "HornbeamFuzz-Bold"};

RetainPtr<CFMutableArrayRef> MakeRecords() {
  return MakeFontList({MakeFontRecord({{kGM_PostScriptNameKey, kNames[0]}, {kGM_FoundryKey, "Acme"}}),
                       MakeFontRecord({{kGM_PostScriptNameKey, kNames[1]}})});
}

std::vector<std::string> NamesIn(const std::string& path) {
  FontParserEPS parser(nullptr, ToCFString(path).get(), true);
  parser.Parse();
  const RetainPtr<CFMutableArrayRef> fonts = MakeArray();
  CFMutableArrayRef target = fonts.get();
  parser.GetObsoleteGlyphmarkData(false, target);
  return FontNamesOf(fonts.get());
}

// The file without the block, and with the header's mended fields as they were.
std::string Undo(std::string saved, const std::string& block, size_t offset, const std::string& before) {
  Promise(saved.compare(offset, block.size(), block) == 0, "the block is in the file");
  saved.erase(offset, block.size());
  if (before.starts_with("\xC5\xD0\xD3\xC6")) {
    saved.replace(8, 4, before, 8, 4);
    saved.replace(20, 4, before, 20, 4);
  }
  return saved;
}

void Save(const MemoryFile& file, const std::string& before) {
  FontParserEPS parser(nullptr, ToCFString(file.Path()).get(), false);
  parser.Parse();
  const RetainPtr<CFMutableArrayRef> records = MakeRecords();
  parser.SetFonts(records.get());
  const std::string block = parser.WriteFontRecordsToBuffer();
  const int result = parser.Save();
  Promise(result == parser.GetError(), "the result is the error");
  const std::string after = file.Bytes();
  if (result != 0) {
    Promise(result == -1 && after == before, "a save that is refused changes nothing");
    return;
  }
  const size_t offset = after.find(block);
  Promise(offset != std::string::npos, "the block is in the file");
  Promise(Undo(after, block, offset, before) == before, "the rest of the file is as it was");
  const bool alone = offset > 0 && EPSLineReader::IsEndOfLine(after[offset - 1]);
  if (!alone || before.find("%ADOBeginSubsetFont:") != std::string::npos) return;
  const std::vector<std::string> found = NamesIn(file.Path());
  for (const char* name : kNames) {
    Promise(std::find(found.begin(), found.end(), name) != found.end(), "each record is read back");
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const MemoryFile file(data, size);
  Save(file, std::string(reinterpret_cast<const char*>(data), size));
  Promise(LiveObjectCounts().empty(), "no object is left");
  return 0;
}
