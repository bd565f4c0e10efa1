#include "Complaint.h"

#include <cstdio>

#include "GErrors.h"
#include "Utf8Text.h"

namespace {

// What the codes mean that a user can do something about; the others have their names.
std::string MeaningOf(unsigned int code) {
  switch (code) {
    case GIPCClient::kServiceUnavailable:
      return "Kiln runs, but doesn't answer";
    case GAgentIF::kShutdown:
      return "Kiln has ended in between";
    case CoreErrorCodes::kVersionMismatch:
      return "the Kiln that runs is of another version";
    case GSqliteDatabaseConnMgr::kSchemaVersionMismatch:
      return "the library's database was made by a newer Kiln, and is left as it is";
    case GOspreySdk::kInvalidVault:
      return "the library's database or vault can't be used; Kiln.log says why";
    case GOspreySdk::kVaultInUse:
      return "another Kiln uses this library";
    default:
      return GetNameForErrorCode(code);
  }
}

}  // namespace

void Complain(const std::string& text) {
  std::fprintf(stderr, "hornbeam: %s\n", PrintableText(text).c_str());
}

void ComplainOfCode(const std::string& text, unsigned int code) {
  std::fprintf(stderr, "hornbeam: %s: %s (0x%08X)\n", PrintableText(text).c_str(), MeaningOf(code).c_str(),
               code);
}
