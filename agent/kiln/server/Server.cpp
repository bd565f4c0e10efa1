#include "kiln/server/Server.h"

#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

#include <boost/asio/post.hpp>
#include <boost/system/error_code.hpp>
#include <exception>
#include <utility>

#include "kiln/server/RequestLimits.h"
#include "protocol/ErrorCodes.h"

namespace kiln {
namespace {

namespace asio = boost::asio;

constexpr size_t kMostConnections = 512;
constexpr std::chrono::milliseconds kAcceptPause{200};
constexpr std::chrono::seconds kFarewell{1};

bool NeedsSystemFonts(wire::ClientMessage::BodyCase body) {
  switch (body) {
    case wire::ClientMessage::kActivateDocumentFonts:
    case wire::ClientMessage::kActivateFonts:
    case wire::ClientMessage::kFontIsActivated:
    case wire::ClientMessage::kFontInfo:
    case wire::ClientMessage::kFontsByName:
    case wire::ClientMessage::kListFonts:
    case wire::ClientMessage::kWorkgroups:
    case wire::ClientMessage::kFamilyFonts:
    case wire::ClientMessage::kFontConflicts:
    case wire::ClientMessage::kChangeWorkgroupFonts:
    case wire::ClientMessage::kCreateSet:
    case wire::ClientMessage::kAddFontsToSets:
    case wire::ClientMessage::kExportFonts:
    case wire::ClientMessage::kCanExportFonts:
      return true;
    default:
      return false;
  }
}

// Pings, and what `hornbeam status` asks.
bool AsksHowKilnIs(wire::ClientMessage::BodyCase body) {
  return body == wire::ClientMessage::kPing || body == wire::ClientMessage::kStatus ||
         body == wire::ClientMessage::kServerState || body == wire::ClientMessage::kGoogleState ||
         body == wire::ClientMessage::kReplicationState;
}

// Most errors come without a body. These say what was done all the same, or how to understand the error.
bool TellsMoreThanTheError(const wire::ServerMessage& reply) {
  return reply.has_hello() ||
         (reply.has_activate_fonts() && reply.error() == codes::kLicenseComplianceViolation);
}

}  // namespace

Server::Server(asio::io_context& context, asio::io_context& wire, const KilnPaths& paths, Options options,
               BoundedLog& log)
    : mContext(context),
      mWire(wire),
      mWireStays(wire.get_executor()),
      mOptions(std::move(options)),
      mLog(log),
      mAcceptor(context),
      mIdle(context),
      mPause(context),
      mReaders(context, mOptions.readerProgram, log),
      mState{context, paths, log, *this, mReaders, nullptr, nullptr, nullptr, 0, 0},
      mSession(mState),
      mActivation(mState),
      mLibrary(mState),
      mWorkgroups(mState),
      mSets(mState) {
  mWireThread = std::thread([this] { RunWire(); });
}

Server::~Server() {
  // Connections may outlive the server in handlers that are never called; they must not call back.
  for (const std::shared_ptr<Connection>& connection : std::set(mConnections)) connection->Close();
  if (!mSocketPath.empty()) unlink(mSocketPath.c_str());
  mWire.stop();
  mWireThread.join();
}

// What it throws ends Kiln, as it does on the main thread.
void Server::RunWire() {
  try {
    mWire.run();
  } catch (...) {
    asio::post(mContext, [failure = std::current_exception()] { std::rethrow_exception(failure); });
  }
}

int Server::Listen(const std::string& socketPath) {
  boost::system::error_code error;
  unlink(socketPath.c_str());  // left by a Kiln that was killed; the lock says that none runs
  mAcceptor.open(asio::local::stream_protocol(), error);
  const mode_t before = umask(0177);
  if (!error) mAcceptor.bind(socketPath, error);
  umask(before);
  if (!error) mAcceptor.listen(asio::socket_base::max_listen_connections, error);
  if (error) return error.value();
  mSocketPath = socketPath;
  return 0;
}

void Server::OpenLibrary() {
  mState.library = FontLibrary::Open(mState.paths, mLog, mState.vaultError);
  if (mState.library) {
    mState.systemFonts =
        std::make_unique<SystemFonts>(mContext, *mState.library->database, mState.library->writer, mReaders,
                                      mOptions.readerProgram, mState.paths.links, mLog);
    mState.systemFonts->Refresh();
    mState.sources = std::make_unique<LibrarySources>(mContext, *mState.library, mReaders, mLog,
                                                      [this](const auto& event) { Broadcast(event); });
    mState.sources->Resume();
    mState.vaultWatch =
        std::make_unique<VaultWatch>(mContext, *mState.library, mState.paths, mLog,
                                     [this](const ActivationChange& change) { Announce(0, change); });
    mState.vaultWatch->Start();
  }
  Accept();
  WatchIdle();
}

void Server::Accept() {
  mAcceptor.async_accept(mWire, [this](auto error, asio::local::stream_protocol::socket socket) {
    if (error == asio::error::operation_aborted || mStopping) return;
    if (!error) {
      Take(std::move(socket));
      return Accept();
    }
    // Out of descriptors: a moment later there may be some.
    mLog.Print("A connection couldn't be taken: %s", error.message().c_str());
    mPause.expires_after(kAcceptPause);
    mPause.async_wait([this](auto cancelled) {
      if (!cancelled) Accept();
    });
  });
}

void Server::Take(asio::local::stream_protocol::socket socket) {
  ucred peer{};
  socklen_t length = sizeof peer;
  const bool known = getsockopt(socket.native_handle(), SOL_SOCKET, SO_PEERCRED, &peer, &length) == 0;
  if (!known || peer.uid != getuid()) {
    mLog.Print("A connection of user %u was refused", unsigned{peer.uid});
    return;
  }
  if (mConnections.size() >= kMostConnections) {
    mLog.Print("A connection of process %d was refused: there are too many", peer.pid);
    return;
  }
  const auto connection = std::make_shared<Connection>(
      mContext, std::move(socket), peer.pid, mLog,
      [this](const std::shared_ptr<Connection>& from, const wire::ClientMessage& message) {
        OnMessage(from, message);
      },
      [this](const std::shared_ptr<Connection>& closed) { OnClosed(closed); });
  mConnections.insert(connection);
  mIdle.cancel();
  connection->Start();
}

// What a client can't be told of it must not hold: it has given up waiting.
bool Server::GaveUpWaiting(Connection& connection, const wire::ClientMessage& message) {
  const bool activates = message.has_activate_fonts() || message.has_activate_document_fonts();
  if (!activates || !connection.PeerHasGone()) return false;
  mLog.Print("'%s' (process %d) didn't wait for its fonts", connection.program.c_str(), connection.Pid());
  return true;
}

void Server::OnMessage(const std::shared_ptr<Connection>& connection, const wire::ClientMessage& message) {
  if (!AsksHowKilnIs(message.body_case())) ++mState.requestCount;
  if (mState.systemFonts && !mState.systemFonts->IsReady() && NeedsSystemFonts(message.body_case())) {
    mState.systemFonts->WhenReady([this, weak = std::weak_ptr<Connection>(connection), message] {
      if (const std::shared_ptr<Connection> still = weak.lock()) Answer(still, message);
    });
    return;
  }
  Answer(connection, message);
}

void Server::Answer(const std::shared_ptr<Connection>& connection, const wire::ClientMessage& message) {
  if (GaveUpWaiting(*connection, message)) return;
  wire::ServerMessage reply;
  reply.set_reply_to(message.id());
  ActivationChange change;
  mAnswering = true;
  Handling handling = Handling::kDone;
  const bool known = message.body_case() != wire::ClientMessage::BODY_NOT_SET;
  if (known && !connection->saidHello && message.body_case() != wire::ClientMessage::kHello) {
    reply.set_error(codes::kNotInitialized);
  } else if (!known) {
    reply.set_error(codes::kNotImplemented);
  } else if (!IsWithinLimits(message)) {
    reply.set_error(codes::kInvalidParam);
  } else if (!mSession.Handle(*connection, message, reply)) {
    if (mState.library) {
      handling = HandleByLibrary(connection, message, reply, change);
    } else {
      reply.set_error(mState.vaultError);
    }
  }
  if (handling != Handling::kLater) {
    if (reply.error() != codes::kSuccess && !TellsMoreThanTheError(reply)) reply.clear_body();
    connection->Send(reply);
    if (reply.has_hello() && reply.error() != codes::kSuccess) connection->SendRestAndClose();
  }
  mAnswering = false;
  for (const std::function<void()>& event : std::exchange(mHeldEvents, {})) event();
  Announce(connection->clientID, change);
  if (mState.sources) mState.sources->sweep.RunBehind(change.deactivated);
}

Handling Server::HandleByLibrary(const std::shared_ptr<Connection>& connection,
                                 const wire::ClientMessage& message, wire::ServerMessage& reply,
                                 ActivationChange& change) {
  if (mActivation.Handle(*connection, message, reply, change)) return Handling::kDone;
  Handling handling = mLibrary.Handle(connection, message, reply);
  if (handling == Handling::kNotMine) handling = mWorkgroups.Handle(connection, message, reply);
  if (handling == Handling::kNotMine) handling = mSets.Handle(connection, message, reply);
  if (handling == Handling::kNotMine) reply.set_error(codes::kNotImplemented);
  return handling;
}

void Server::OnClosed(const std::shared_ptr<Connection>& connection) {
  mConnections.erase(connection);
  bool another = false;
  for (const std::shared_ptr<Connection>& other : mConnections) {
    another = another || (other->saidHello && other->uuid == connection->uuid);
  }
  if (mStopping) {
    if (mConnections.empty()) mContext.stop();
    return;
  }
  if (connection->saidHello && !another) mSession.EndSession(*connection);
  WatchIdle();
}

void Server::WatchIdle() {
  if (mOptions.exitWhenIdleSeconds <= 0 || !mConnections.empty() || mStopping) return;
  mIdle.expires_after(std::chrono::seconds(mOptions.exitWhenIdleSeconds));
  mIdle.async_wait([this](auto error) {
    if (error || !mConnections.empty() || mStopping) return;
    if (mState.sources && !mState.sources->replications.Running().empty()) return WatchIdle();
    mLog.Print("Ending, since no client has been here for %d seconds", mOptions.exitWhenIdleSeconds);
    Stop();
  });
}

void Server::Stop() {
  if (std::exchange(mStopping, true)) return;
  boost::system::error_code ignored;
  mAcceptor.close(ignored);
  mIdle.cancel();
  unlink(mSocketPath.c_str());
  wire::ServerMessage event;
  event.mutable_shutdown();
  Broadcast(event);
  if (mConnections.empty()) return mContext.stop();
  for (const std::shared_ptr<Connection>& connection : std::set(mConnections)) connection->SendRestAndClose();
  // A client that doesn't read doesn't keep Kiln from ending.
  mPause.expires_after(kFarewell);
  mPause.async_wait([this](auto) { mContext.stop(); });
}

void Server::Broadcast(const wire::ServerMessage& event) {
  Send([](const Connection&) { return true; }, event);
}

void Server::SendTo(int64_t clientID, const wire::ServerMessage& event) {
  Send([clientID](const Connection& connection) { return connection.clientID == clientID; }, event);
}

void Server::Send(const std::function<bool(const Connection&)>& isFor, const wire::ServerMessage& event) {
  if (mAnswering) {
    mHeldEvents.push_back([this, isFor, event] { Send(isFor, event); });
    return;
  }
  for (const std::shared_ptr<Connection>& connection : std::set(mConnections)) {
    if (connection->saidHello && isFor(*connection)) connection->Send(event);
  }
}

size_t Server::CountOfClients() const {
  size_t count = 0;
  for (const std::shared_ptr<Connection>& connection : mConnections) count += connection->saidHello ? 1 : 0;
  return count;
}

}  // namespace kiln
