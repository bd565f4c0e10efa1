#include "kiln/server/SessionRequests.h"

#include <unistd.h>

#include <cctype>
#include <utility>

#include "kiln/system/ProcessLife.h"
#include "protocol/ErrorCodes.h"
#include "protocol/Version.h"

namespace kiln {
namespace {

constexpr size_t kUuidLength = 36;
constexpr size_t kLongestProgram = 255;
constexpr size_t kLongestLogName = 100;

bool IsUuid(const std::string& text) {
  if (text.size() != kUuidLength) return false;
  for (size_t i = 0; i < text.size(); ++i) {
    const bool dash = i == 8 || i == 13 || i == 18 || i == 23;
    if (dash ? text[i] != '-' : !std::isxdigit(static_cast<unsigned char>(text[i]))) return false;
  }
  return true;
}

// A plain name, and none of Kiln's own files.
bool IsLogName(const std::string& name) {
  return !name.empty() && name.size() <= kLongestLogName && name.front() != '.' &&
         name.find('/') == std::string::npos && name.find('\0') == std::string::npos &&
         !name.starts_with("Kiln.log");
}

}  // namespace

bool SessionRequests::Handle(Connection& connection, const wire::ClientMessage& message,
                             wire::ServerMessage& reply) {
  switch (message.body_case()) {
    case wire::ClientMessage::kHello:
      reply.set_error(Hello(connection, message.hello(), *reply.mutable_hello()));
      return true;
    case wire::ClientMessage::kPing:
      return true;
    case wire::ClientMessage::kInitApp:
      reply.set_error(InitApp(connection, message.init_app().host_type()));
      return true;
    case wire::ClientMessage::kInitThread:
      reply.set_error(mState.vaultError);
      return true;
    case wire::ClientMessage::kEndSession:
      EndSession(connection);
      return true;
    case wire::ClientMessage::kSchemaInSync:
      reply.mutable_schema_in_sync()->set_in_sync(mState.vaultError != codes::kSchemaVersionMismatch);
      return true;
    case wire::ClientMessage::kStandalone:
      reply.mutable_standalone()->set_standalone(!mState.sources ||
                                                 mState.sources->fontServer.IsStandalone());
      return true;
    case wire::ClientMessage::kLoggedIn:
      reply.mutable_logged_in()->set_logged_in(!mState.sources || mState.sources->fontServer.IsLoggedIn());
      return true;
    case wire::ClientMessage::kVaultPath:
      reply.mutable_vault_path()->set_path(mState.paths.vault);
      return true;
    case wire::ClientMessage::kStatus:
      Status(*reply.mutable_status());
      return true;
    case wire::ClientMessage::kBeginLogging:
      reply.set_error(BeginLogging(connection, message.begin_logging().file_name()));
      return true;
    case wire::ClientMessage::kLog:
      (connection.clientLog ? *connection.clientLog : mState.log).Write(message.log().text());
      return true;
    default:
      return false;
  }
}

uint32_t SessionRequests::Hello(Connection& connection, const wire::HelloRequest& request,
                                wire::HelloReply& reply) {
  reply.set_protocol_version(kProtocolVersion);
  reply.set_kiln_version(kKilnVersion);
  if (request.protocol_version() != kProtocolVersion) return codes::kVersionMismatch;
  if (!IsUuid(request.client_uuid()) || request.program().size() > kLongestProgram)
    return codes::kInvalidParam;
  if (connection.saidHello && connection.uuid != request.client_uuid()) return codes::kInvalidParam;
  if (mState.library) {
    ClientStore::Client client;
    client.uuid = request.client_uuid();
    client.pid = connection.Pid();
    client.startTime = ProcessStartTime(connection.Pid());
    client.hostType = request.host_type();
    client.program = request.program();
    connection.clientID = mState.library->clients.Put(client);
    if (connection.clientID == 0) return mState.library->database->Error();
  }
  connection.saidHello = true;
  connection.uuid = request.client_uuid();
  connection.program = request.program();
  connection.hostType = request.host_type();
  reply.set_schema_in_sync(mState.vaultError != codes::kSchemaVersionMismatch);
  reply.set_vault_error(mState.vaultError);
  mState.log.Print("'%s' (process %d) has connected", connection.program.c_str(), connection.Pid());
  return codes::kSuccess;
}

uint32_t SessionRequests::InitApp(Connection& connection, int32_t hostType) {
  connection.hostType = hostType;
  if (mState.vaultError == codes::kSchemaVersionMismatch) return mState.vaultError;
  if (mState.library && !mState.library->clients.SetHostType(connection.clientID, hostType)) {
    return mState.library->database->Error();
  }
  return codes::kSuccess;
}

void SessionRequests::EndSession(Connection& connection) {
  if (!mState.library || connection.clientID == 0) return;
  ActivationChange change;
  if (mState.library->book.EndSession(connection.clientID, change) == codes::kSuccess) {
    mState.clients.Announce(connection.clientID, change);
    mState.sources->sweep.RunBehind(change.deactivated);
  }
}

uint32_t SessionRequests::BeginLogging(Connection& connection, const std::string& fileName) {
  if (!IsLogName(fileName)) return codes::kInvalidParam;
  connection.clientLog = std::make_unique<BoundedLog>(mState.paths.state + "/" + fileName);
  return codes::kSuccess;
}

void SessionRequests::Status(wire::StatusReply& reply) {
  reply.set_kiln_version(kKilnVersion);
  reply.set_pid(static_cast<uint32_t>(getpid()));
  reply.set_vault_error(mState.vaultError);
  reply.set_vault_path(mState.paths.vault);
  reply.set_client_count(static_cast<uint32_t>(mState.clients.CountOfClients()));
  reply.set_request_count(mState.requestCount);
  if (!mState.library) return;
  int64_t version = 0;
  mState.library->database->ReadNumber("PRAGMA user_version", version);
  reply.set_schema_version(static_cast<uint32_t>(version));
  reply.set_font_count(mState.library->fonts.CountOfLibrary());
  reply.set_system_font_count(mState.library->fonts.CountOfSystem());
  reply.set_active_count(mState.library->activations.CountOfActiveFonts());
}

}  // namespace kiln
