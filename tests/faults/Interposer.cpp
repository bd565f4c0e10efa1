#include "Interposer.h"

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <chrono>
#include <cstring>
#include <filesystem>
#include <thread>

#include "FaultTest.h"
#include "protocol/Framing.h"
#include "protocol/SocketPath.h"

using kiln::wire::ClientMessage;
using kiln::wire::ServerMessage;

namespace {

std::string TakeSocketAway() {
  const std::string path = kiln::SocketPath();
  while (!std::filesystem::exists(path)) std::this_thread::sleep_for(std::chrono::milliseconds(5));
  std::filesystem::rename(path, path + ".kiln");
  return path + ".kiln";
}

int ConnectTo(const std::string& path) {
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  std::strncpy(address.sun_path, path.c_str(), sizeof(address.sun_path) - 1);
  const int kiln = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
  if (connect(kiln, reinterpret_cast<sockaddr*>(&address), sizeof(address)) == 0) return kiln;
  close(kiln);
  return -1;
}

}  // namespace

Interposer::Interposer()
    : m_kilnSocket(TakeSocketAway()),
      m_agent(FakeAgent::Misbehaving([this](int client) { Relay(client); })) {}

void Interposer::KillKilnOn(Kill moment, std::optional<Kind> kind) {
  m_moment = moment;
  m_kind = kind.value_or(Kind::BODY_NOT_SET);
  m_armed = true;
}

bool Interposer::IsMeant(const ClientMessage& request) const {
  if (!m_armed) return false;
  if (m_kind != Kind::BODY_NOT_SET) return request.body_case() == m_kind;
  return !request.has_hello() && !request.has_ping() && !request.has_begin_logging();
}

void Interposer::Relay(int client) {
  const int kiln = ConnectTo(m_kilnSocket);
  if (kiln < 0) return;
  std::thread replies([this, kiln, client] { PassReplies(kiln, client); });
  ClientMessage request;
  while (FakeAgent::ReceiveFrame(client, request)) {
    if (IsMeant(request)) {
      m_armed = false;
      if (m_moment == Kill::kOnRequest) {
        FaultTest::KillKiln();
        break;
      }
      m_awaitedReply = request.id();
    }
    std::string frame;
    if (!kiln::AppendFrame(request, frame) || !FakeAgent::SendBytes(kiln, frame)) break;
  }
  shutdown(kiln, SHUT_RDWR);
  replies.join();
  close(kiln);
}

void Interposer::PassReplies(int kiln, int client) {
  kiln::FrameReader frames;
  char piece[65536];
  for (ssize_t length = 0; (length = recv(kiln, piece, sizeof(piece), 0)) > 0;) {
    frames.Append(piece, static_cast<size_t>(length));
    std::string_view body;
    while (frames.Next(body) == kiln::FrameReader::Result::kFrame) {
      ServerMessage message;
      message.ParseFromArray(body.data(), static_cast<int>(body.size()));
      if (message.reply_to() != 0 && message.reply_to() == m_awaitedReply) {
        FaultTest::KillKiln();
        shutdown(client, SHUT_RDWR);
        return;
      }
      FakeAgent::SendFrame(client, message);
    }
  }
  shutdown(client, SHUT_RDWR);
}
