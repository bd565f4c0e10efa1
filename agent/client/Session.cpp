#include "client/Session.h"

#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <utility>

#include "GErrorCodes.h"
#include "System/Processes.h"
#include "protocol/SocketPath.h"
#include "protocol/Version.h"

using kiln::wire::ClientMessage;

namespace {

constexpr char kAgentName[] = "Kiln";
constexpr std::chrono::milliseconds kRetryPause{20};
// Of what is said on the way out.
constexpr CallLimit kFarewellLimit{.answer = std::chrono::milliseconds{1000}};

std::string ProgramName() {
  std::error_code error;
  return std::filesystem::read_symlink("/proc/self/exe", error).filename();
}

}  // namespace

Session::Session(std::string clientUUID, Connection::EventSink events,
                 Connection::Clock::time_point waitedInVain)
    : mClientUUID(std::move(clientUUID)), mEvents(std::move(events)), mWaitedInVain(waitedInVain) {}

bool Session::IsAgentProcessRunning() {
  return std::ranges::any_of(platform::Processes::Get().ListSession(),
                             [](const auto& process) { return process.Name() == kAgentName; });
}

TErrCode Session::Call(ClientMessage& request, Connection::Incoming& reply, const CallLimit& limit,
                       const Connection::ProgressSink& progress) {
  TErrCode code = CoreErrorCodes::kSuccess;
  const std::shared_ptr<Connection> connection = Connected(code);
  return connection == nullptr ? code : connection->Call(request, limit, reply, progress);
}

TErrCode Session::CallIfConnected(ClientMessage& request) {
  std::shared_ptr<Connection> connection;
  {
    std::scoped_lock lock(mMutex);
    connection = mConnection;
  }
  if (connection == nullptr || !connection->IsOpen()) return CoreErrorCodes::kSuccess;
  Connection::Incoming reply;
  return connection->Call(request, kFarewellLimit, reply);
}

void Session::SetLogFile(const std::string& fileName) {
  std::scoped_lock lock(mMutex);
  mLogFile = fileName;
}

void Session::Drop() {
  mDropped = true;
  std::shared_ptr<Connection> connection;
  {
    std::scoped_lock lock(mMutex);
    connection = std::exchange(mConnection, nullptr);
  }
  if (connection != nullptr) connection->Break();
}

std::shared_ptr<Connection> Session::Connected(TErrCode& code) {
  const auto open = [this]() -> std::shared_ptr<Connection> {
    std::scoped_lock lock(mMutex);
    return mConnection != nullptr && mConnection->IsOpen() ? mConnection : nullptr;
  };
  if (auto connection = open()) return connection;
  std::scoped_lock connecting(mConnectMutex);
  if (auto connection = open()) return connection;
  auto connection = Connect(code);
  if (connection == nullptr) return nullptr;
  std::shared_ptr<Connection> broken;  // its thread is waited for outside the lock
  std::scoped_lock lock(mMutex);
  if (mDropped) {
    code = GAgentIF::kShutdown;
    return nullptr;
  }
  broken = std::exchange(mConnection, connection);
  return connection;
}

std::shared_ptr<Connection> Session::Connect(TErrCode& code) {
  using Clock = Connection::Clock;
  const auto now = Clock::now();
  const Clock::time_point before = mWaitedInVain;
  const bool again = before != Clock::time_point() && now - before < kShortWindowsLast;
  const auto until = now + (again ? kShortWindow : kConnectWindow);
  const std::string path = kiln::SocketPath();
  while (!mDropped) {
    std::shared_ptr<Connection> connection = Connection::Open(path, mEvents, code);
    if (connection != nullptr) {
      const auto left = std::chrono::ceil<std::chrono::milliseconds>(until - Clock::now());
      code = Greet(*connection, std::max(left, std::chrono::milliseconds{1}));
      if (code == CoreErrorCodes::kSuccess) return connection;
      if (code == GIPCClient::kServiceUnavailable) mWaitedInVain = Clock::now();
      // An agent that closes instead of greeting back is on its way out; the next may be on its way in.
      if (code != GAgentIF::kShutdown) return nullptr;
    }
    const bool waitedInVain = Clock::now() + kRetryPause >= until;
    if (waitedInVain) mWaitedInVain = Clock::now();
    if (waitedInVain || !IsAgentProcessRunning()) {
      code = GIPCClient::kServiceUnavailable;
      return nullptr;
    }
    std::this_thread::sleep_for(kRetryPause);
  }
  code = GAgentIF::kShutdown;
  return nullptr;
}

TErrCode Session::Greet(Connection& connection, std::chrono::milliseconds limit) {
  ClientMessage request;
  auto& hello = *request.mutable_hello();
  hello.set_protocol_version(kiln::kProtocolVersion);
  hello.set_client_uuid(mClientUUID);
  hello.set_pid(static_cast<uint32_t>(getpid()));
  hello.set_host_type(mHostType);
  hello.set_program(ProgramName());
  Connection::Incoming reply;
  if (const TErrCode code = connection.Call(request, {.answer = limit}, reply)) return code;
  if (reply.message.hello().protocol_version() != kiln::kProtocolVersion) {
    return CoreErrorCodes::kVersionMismatch;
  }

  std::string logFile;
  {
    std::scoped_lock lock(mMutex);
    logFile = mLogFile;
  }
  if (!logFile.empty()) {
    // A log that can't be opened again is no reason not to work.
    ClientMessage logging;
    logging.mutable_begin_logging()->set_file_name(logFile);
    Connection::Incoming ignored;
    connection.Call(logging, {.answer = limit}, ignored);
  }
  return CoreErrorCodes::kSuccess;
}
