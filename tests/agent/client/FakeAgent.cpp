#include "FakeAgent.h"

#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <algorithm>
#include <cstring>
#include <stdexcept>

#include "protocol/Framing.h"
#include "protocol/SocketPath.h"
#include "protocol/Version.h"

namespace {

ino_t FileNumber(const std::string& path) {
  struct stat file {};
  return stat(path.c_str(), &file) == 0 ? file.st_ino : 0;
}

}  // namespace

FakeAgent::FakeAgent(Answer answer) : m_answer(std::move(answer)) {
  m_behaviour = [this](int socket) { Serve(socket); };
  Listen();
}

FakeAgent::FakeAgent(Behaviour behaviour, int) : m_behaviour(std::move(behaviour)) {
  Listen();
}

void FakeAgent::Listen() {
  const std::string path = kiln::SocketPath();
  if (kiln::MakeRuntimeFolder() != 0) throw std::runtime_error("No runtime folder");
  unlink(path.c_str());
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  std::strncpy(address.sun_path, path.c_str(), sizeof(address.sun_path) - 1);
  m_listener = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
  if (bind(m_listener, reinterpret_cast<sockaddr*>(&address), sizeof(address)) != 0 ||
      listen(m_listener, 16) != 0) {
    throw std::runtime_error("Can't listen at " + path);
  }
  m_socketFile = FileNumber(path);
  m_acceptor = std::thread([this] {
    for (int socket = 0; (socket = accept4(m_listener, nullptr, nullptr, SOCK_CLOEXEC)) >= 0;) {
      std::scoped_lock lock(m_mutex);
      m_connections.try_emplace(socket, [this, socket] {
        m_behaviour(socket);
        shutdown(socket, SHUT_RDWR);
      });
    }
  });
}

FakeAgent::~FakeAgent() {
  // A Kiln may have put its own in the place.
  if (FileNumber(kiln::SocketPath()) == m_socketFile) unlink(kiln::SocketPath().c_str());
  shutdown(m_listener, SHUT_RDWR);
  m_acceptor.join();
  close(m_listener);
  BreakConnections();
  for (auto& [socket, thread] : m_connections) {
    thread.join();
    close(socket);
  }
}

void FakeAgent::BreakConnections() {
  std::scoped_lock lock(m_mutex);
  for (const auto& [socket, thread] : m_connections) shutdown(socket, SHUT_RDWR);
}

void FakeAgent::SendEvent(Reply event) {
  event.set_reply_to(0);
  std::scoped_lock lock(m_mutex);
  for (const auto& [socket, thread] : m_connections) SendFrame(socket, event);
}

void FakeAgent::Serve(int socket) {
  Request request;
  while (ReceiveFrame(socket, request)) {
    Reply reply = ReplyTo(request.id());
    if (request.has_hello()) {
      reply.mutable_hello()->set_protocol_version(kiln::kProtocolVersion);
    } else if (m_answer) {
      m_answer(request, reply);
    }
    {
      std::scoped_lock lock(m_mutex);
      m_requests.push_back(request);
    }
    if (!SendFrame(socket, reply)) return;
  }
}

std::vector<FakeAgent::Request> FakeAgent::Requests() const {
  std::scoped_lock lock(m_mutex);
  return m_requests;
}

int FakeAgent::Count(Request::BodyCase kind) const {
  std::scoped_lock lock(m_mutex);
  return static_cast<int>(std::ranges::count_if(
      m_requests, [kind](const Request& request) { return request.body_case() == kind; }));
}

FakeAgent::Reply FakeAgent::ReplyTo(uint32_t id) {
  Reply reply;
  reply.set_reply_to(id);
  return reply;
}

bool FakeAgent::SendBytes(int socket, const std::string& bytes) {
  size_t sent = 0;
  while (sent < bytes.size()) {
    const ssize_t piece = send(socket, bytes.data() + sent, bytes.size() - sent, MSG_NOSIGNAL);
    if (piece <= 0) return false;
    sent += static_cast<size_t>(piece);
  }
  return true;
}

bool FakeAgent::SendFrame(int socket, const Reply& message) {
  std::string frame;
  return kiln::AppendFrame(message, frame) && SendBytes(socket, frame);
}

bool FakeAgent::ReceiveFrame(int socket, Request& request) {
  unsigned char header[kiln::kFrameHeaderLength];
  if (recv(socket, header, sizeof(header), MSG_WAITALL) != sizeof(header)) return false;
  std::string body(
      (size_t{header[0]} << 24) | (size_t{header[1]} << 16) | (size_t{header[2]} << 8) | header[3], 0);
  return (body.empty() ||
          recv(socket, body.data(), body.size(), MSG_WAITALL) == static_cast<ssize_t>(body.size())) &&
         request.ParseFromString(body);
}

void FakeAgent::Drain(int socket) {
  char bytes[4096];
  while (recv(socket, bytes, sizeof(bytes), 0) > 0) {
  }
}

bool FakeAgent::Greet(int socket) {
  Request request;
  if (!ReceiveFrame(socket, request)) return false;
  Reply reply = ReplyTo(request.id());
  reply.mutable_hello()->set_protocol_version(kiln::kProtocolVersion);
  return SendFrame(socket, reply);
}
