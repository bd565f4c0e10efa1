// The reader of IDML packages. Any bytes give a document or a sentence that begins with the path. Bytes that
// begin with "=== " are the text of a fixture, which is zipped first, so that what lies in the parts is
// varied too.
//
// Links: hornbeam_idml hornbeam_platform PkgConfig::LIBZIP
// Sources: tests/support/IdmlFixture.cpp
#include <string_view>

#include "FuzzSupport.h"
#include "idml/PackageReader.h"
#include "support/IdmlFixture.h"
#include "support/TemporaryFolder.h"

namespace {

void Read(const std::string& path) {
  std::string error;
  const std::optional<idml::Document> document = idml::ReadPackage(path, error);
  Promise(document.has_value() || error.starts_with(path), "there is a document or a sentence on the file");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  if (!text.starts_with("=== ")) {
    const MemoryFile file(data, size);
    Read(file.Path());
    return 0;
  }
  static const TemporaryFolder folder;
  std::string path;
  try {
    path = IdmlFixture(text).Write(folder.Path("fuzz.idml"));
  } catch (const std::runtime_error&) {
    return 0;  // no text of a fixture
  }
  Read(path);
  return 0;
}
