#include "StatusCommand.h"

#include <cstdio>

#include "Complaint.h"
#include "ExitCodes.h"
#include "JsonText.h"
#include "KilnLibrary.h"
#include "Utf8Text.h"

namespace {

void PrintRunning(const KilnLibrary::Status& status, bool asJson) {
  if (asJson) {
    JsonText json;
    json.BeginObject();
    json.Key("running").Boolean(true);
    json.Key("version").String(status.version);
    json.Key("processID").String(status.processID);
    json.Key("vault").String(status.vaultPath);
    json.Key("fonts").Integer(static_cast<long long>(status.fontCount));
    json.Key("activeFonts").Integer(static_cast<long long>(status.activeFontCount));
    json.Key("requests").Integer(static_cast<long long>(status.requestCount));
    json.EndObject();
    std::puts(json.Text().c_str());
    return;
  }
  std::printf("Kiln %s is running (process %s).\n", status.version.c_str(), status.processID.c_str());
  std::printf("Vault:  %s\n", PrintableText(status.vaultPath).c_str());
  std::printf("Fonts:  %lu in the library, %lu active\n", status.fontCount, status.activeFontCount);
  std::printf("Asked:  %lu requests since it started\n", status.requestCount);
}

void PrintNotRunning(bool asJson) {
  std::puts(asJson ? JsonText().BeginObject().Key("running").Boolean(false).EndObject().Text().c_str()
                   : "Kiln isn't running; it starts when a document or the library needs it.");
}

}  // namespace

int RunStatus(const StatusOptions& options) {
  if (!KilnConnection::IsKilnRunning()) {
    PrintNotRunning(options.json);
    return kExitOk;
  }
  const std::unique_ptr<KilnConnection> kiln = KilnConnection::Open(KilnConnection::Launch::kNever);
  if (!kiln) return kExitFailed;
  KilnLibrary::Status status;
  if (const ErrCode code = KilnLibrary(*kiln).GetStatus(status)) {
    ComplainOfCode("Kiln doesn't say how it is", code);
    return kExitFailed;
  }
  PrintRunning(status, options.json);
  if (status.vaultStatus == 0) return kExitOk;
  ComplainOfCode("Kiln has no library", status.vaultStatus);
  return kExitFailed;
}
