#include "StatusCommand.h"

#include <cstdio>

#include "Complaint.h"
#include "ExitCodes.h"
#include "JsonText.h"
#include "KilnLibrary.h"
#include "ServerState.h"
#include "Utf8Text.h"

namespace {

std::string EditionText(const ServerState& state) {
  if (state.isStandalone) return "stands alone";
  std::string text = "font server " + PrintableText(state.server);
  if (!state.isLoggedIn) return text + "; nobody is logged in";
  return text + ", " + PrintableText(state.user) + " is logged in, " +
         (state.isOnline ? "online" : "offline");
}

std::string GoogleText(const ServerState& state) {
  return state.isGoogleOn ? "on, from " + PrintableText(state.googleFolder) : "off";
}

void AddStateToJson(const ServerState& state, JsonText& json) {
  json.Key("standalone").Boolean(state.isStandalone);
  json.Key("server").String(state.server);
  json.Key("user").String(state.user);
  json.Key("loggedIn").Boolean(state.isLoggedIn);
  json.Key("online").Boolean(state.isOnline);
  json.Key("google").Boolean(state.isGoogleOn);
  json.Key("googleFolder").String(state.googleFolder);
  json.Key("takingOver").Boolean(state.isTakingOver);
}

void PrintState(const ServerState& state) {
  std::printf("Server: %s\n", EditionText(state).c_str());
  std::printf("Google: %s\n", GoogleText(state).c_str());
  if (state.isTakingOver) std::puts("Fonts are on their way.");
}

// Without a library there is no state.
void PrintRunning(const KilnLibrary::Status& status, const ServerState* state, bool asJson) {
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
    if (state) AddStateToJson(*state, json);
    json.EndObject();
    std::puts(json.Text().c_str());
    return;
  }
  std::printf("Kiln %s is running (process %s).\n", status.version.c_str(), status.processID.c_str());
  std::printf("Vault:  %s\n", PrintableText(status.vaultPath).c_str());
  std::printf("Fonts:  %lu in the library, %lu active\n", status.fontCount, status.activeFontCount);
  std::printf("Asked:  %lu requests since it started\n", status.requestCount);
  if (state) PrintState(*state);
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
  ErrCode code = status.vaultStatus;
  ServerState state;
  if (code == 0) code = ServerState::Read(*kiln, state);
  PrintRunning(status, code == 0 ? &state : nullptr, options.json);
  if (code == 0) return kExitOk;
  ComplainOfCode(status.vaultStatus != 0 ? "Kiln has no library" : "Kiln doesn't say where fonts come from",
                 code);
  return kExitFailed;
}
