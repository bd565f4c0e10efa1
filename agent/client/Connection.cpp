#include "client/Connection.h"

#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>
#include <cstring>
#include <string_view>
#include <utility>

#include "GErrorCodes.h"
#include "protocol/Framing.h"

using kiln::wire::ClientMessage;

namespace {

constexpr std::chrono::seconds kPingInterval{1};

std::atomic<uint64_t> sReceived = 0;

// The socket's folder may be below /tmp: somebody else must not answer in the agent's name.
bool PeerIsThisUser(int socket) {
  ucred peer{};
  socklen_t length = sizeof(peer);
  return getsockopt(socket, SOL_SOCKET, SO_PEERCRED, &peer, &length) == 0 && peer.uid == getuid();
}

// Non-blocking, so that a listener whose queue is full (a stopped process) can't hold the caller.
TErrCode ConnectTo(int socket, const std::string& path) {
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  if (path.size() >= sizeof(address.sun_path)) return GIPCSender::kReceiverNotAvailable;
  std::memcpy(address.sun_path, path.c_str(), path.size() + 1);
  if (connect(socket, reinterpret_cast<const sockaddr*>(&address), sizeof(address)) == 0) {
    return PeerIsThisUser(socket) ? CoreErrorCodes::kSuccess : GIPCClient::kServiceUnavailable;
  }
  return errno == ENOENT || errno == ECONNREFUSED || errno == ENOTDIR ? GIPCSender::kReceiverNotAvailable
                                                                      : GIPCClient::kServiceUnavailable;
}

bool IsProgress(const kiln::wire::ServerMessage& message) {
  return message.has_progress() || message.has_task_progress();
}

}  // namespace

std::unique_ptr<Connection> Connection::Open(const std::string& socketPath, EventSink events,
                                             TErrCode& code) {
  const int descriptor = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
  if (descriptor < 0) {
    code = GIPCClient::kServiceUnavailable;
    return nullptr;
  }
  code = ConnectTo(descriptor, socketPath);
  if (code != CoreErrorCodes::kSuccess) {
    close(descriptor);
    return nullptr;
  }
  return std::unique_ptr<Connection>(new Connection(descriptor, std::move(events)));
}

Connection::Connection(int socket, EventSink events) : mSocket(socket), mEvents(std::move(events)) {
  try {
    mReader = std::thread([this] { ReadUntilBroken(); });
  } catch (...) {
    close(mSocket);
    throw;
  }
}

Connection::~Connection() {
  Break();
  mReader.join();
  close(mSocket);
}

void Connection::Break() {
  // Wakes the reader and a sender that waits for room; the descriptor stays until both are gone.
  shutdown(mSocket, SHUT_RDWR);
  std::scoped_lock lock(mMutex);
  mBroken = true;
  mAnswered.notify_all();
}

bool Connection::IsOpen() const {
  std::scoped_lock lock(mMutex);
  return !mBroken;
}

// With mMutex held.
uint32_t Connection::NewID() {
  do ++mLastID;
  while (mLastID == 0 || mPending.contains(mLastID));
  return mLastID;
}

TErrCode Connection::Call(ClientMessage& request, const CallLimit& limit, Incoming& reply,
                          const ProgressSink& progress) {
  const auto start = Clock::now();
  uint32_t id = 0;
  {
    std::scoped_lock lock(mMutex);
    if (mBroken) return GAgentIF::kShutdown;
    id = NewID();
    mPending[id].wantsProgress = static_cast<bool>(progress);
  }
  struct Forget {
    Connection& connection;
    uint32_t id;
    ~Forget() {
      std::scoped_lock lock(connection.mMutex);
      connection.mPending.erase(id);
    }
  } forget{*this, id};

  request.set_id(id);
  std::string frame;
  if (!kiln::AppendFrame(request, frame)) return GIPCReceiver::kMessageTooLarge;
  const auto sendLimit = limit.silence.count() > 0 ? limit.silence : limit.answer;
  if (const TErrCode code = Send(frame, start + sendLimit); code != CoreErrorCodes::kSuccess) return code;
  return Await(id, start, limit, reply, progress);
}

TErrCode Connection::Await(uint32_t id, Clock::time_point start, const CallLimit& limit, Incoming& reply,
                           const ProgressSink& progress) {
  auto deadline = start + limit.answer;
  auto nextPing = start + kPingInterval;
  const bool watched = limit.silence.count() > 0;
  std::unique_lock lock(mMutex);
  std::deque<Incoming>& messages = mPending.at(id).messages;
  for (;;) {
    const auto now = Clock::now();
    if (!messages.empty()) {
      Incoming incoming = std::move(messages.front());
      messages.pop_front();
      if (!IsProgress(incoming.message)) {
        reply = std::move(incoming);
        return reply.message.error();
      }
      lock.unlock();
      progress(incoming.message);
      deadline = Clock::now() + limit.answer;
      lock.lock();
      continue;
    }
    const auto silent = watched ? std::max(start, mLastHeard) + limit.silence : deadline;
    if (mBroken) return GAgentIF::kShutdown;
    if (now >= std::min(deadline, silent)) {
      lock.unlock();
      // Work that nobody waits for must not be begun when the agent goes on.
      if (watched) Break();
      return GIPCClient::kServiceUnavailable;
    }
    if (watched && now >= nextPing) {
      nextPing = now + kPingInterval;
      const uint32_t pingID = NewID();
      lock.unlock();
      Ping(pingID, silent);
      lock.lock();
      continue;
    }
    const auto until = watched ? std::min({deadline, silent, nextPing}) : deadline;
    mAnswered.wait_until(lock, until, [&] { return mBroken || !messages.empty(); });
  }
}

// Its answer has no taker; that it comes is enough (mLastHeard).
void Connection::Ping(uint32_t id, Clock::time_point deadline) {
  ClientMessage request;
  request.set_id(id);
  request.mutable_ping();
  std::string frame;
  if (kiln::AppendFrame(request, frame)) Send(frame, deadline);
}

TErrCode Connection::Send(const std::string& frame, Clock::time_point deadline) {
  std::scoped_lock sending(mSendMutex);
  std::string_view rest = frame;
  while (!rest.empty()) {
    const ssize_t sent = send(mSocket, rest.data(), rest.size(), MSG_NOSIGNAL);
    if (sent >= 0) {
      rest.remove_prefix(static_cast<size_t>(sent));
      continue;
    }
    if (errno == EINTR) continue;
    if (errno != EAGAIN) {
      Break();
      return GAgentIF::kShutdown;
    }
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - Clock::now());
    pollfd room{mSocket, POLLOUT, 0};
    if (left.count() > 0 && poll(&room, 1, static_cast<int>(left.count())) >= 0) continue;
    // Half a frame on the wire: nothing that follows could be understood.
    if (rest.size() != frame.size()) Break();
    return GIPCClient::kServiceUnavailable;
  }
  return CoreErrorCodes::kSuccess;
}

void Connection::ReadUntilBroken() {
  try {
    kiln::FrameReader frames;
    std::array<char, 65536> piece;
    for (bool sound = true; sound;) {
      pollfd input{mSocket, POLLIN, 0};
      if (poll(&input, 1, -1) < 0 && errno != EINTR) break;
      const ssize_t length = recv(mSocket, piece.data(), piece.size(), 0);
      if (length < 0 && (errno == EINTR || errno == EAGAIN)) continue;
      if (length <= 0) break;
      frames.Append(piece.data(), static_cast<size_t>(length));
      std::string_view body;
      kiln::FrameReader::Result result;
      while (sound && (result = frames.Next(body)) == kiln::FrameReader::Result::kFrame) {
        Incoming incoming{.message = {}, .order = ++sReceived};
        sound = incoming.message.ParseFromArray(body.data(), static_cast<int>(body.size())) &&
                Dispatch(std::move(incoming));
      }
      if (sound) sound = result == kiln::FrameReader::Result::kNeedMore;
    }
  } catch (...) {  // out of memory: the connection can't be read on
  }
  Break();
}

bool Connection::Dispatch(Incoming&& incoming) {
  std::unique_lock lock(mMutex);
  mLastHeard = Clock::now();
  if (mBroken) return false;
  if (incoming.message.reply_to() == 0) {
    lock.unlock();
    mEvents(std::move(incoming));
    return true;
  }
  const auto call = mPending.find(incoming.message.reply_to());
  if (call == mPending.end()) return true;  // a ping's, or its caller has stopped waiting
  PendingCall& pending = call->second;
  if (IsProgress(incoming.message) && !pending.wantsProgress) return true;
  // Counts alone are overtaken by newer ones.
  if (!pending.messages.empty() && incoming.message.has_task_progress() &&
      pending.messages.back().message.has_task_progress()) {
    pending.messages.pop_back();
  }
  if (pending.messages.size() == kMaxMessagesOfCall) return false;
  pending.messages.push_back(std::move(incoming));
  mAnswered.notify_all();
  return true;
}
