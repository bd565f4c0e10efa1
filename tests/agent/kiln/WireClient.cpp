#include "WireClient.h"

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <cstring>
#include <stdexcept>
#include <thread>

#include "protocol/SocketPath.h"
#include "protocol/Version.h"

using namespace kiln;

WireClient::WireClient(const std::string& uuid) {
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  const std::string path = SocketPath();
  std::memcpy(address.sun_path, path.c_str(), path.size() + 1);
  for (int i = 0; i < 1000; ++i) {
    mSocket = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    if (connect(mSocket, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0) break;
    Close();
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
  }
  if (mSocket < 0) throw std::runtime_error("No Kiln at " + path);
  // A Kiln that doesn't answer fails the test, it doesn't hang it.
  const timeval patience{20, 0};
  setsockopt(mSocket, SOL_SOCKET, SO_RCVTIMEO, &patience, sizeof patience);
  if (uuid.empty()) return;
  wire::ClientMessage hello;
  hello.mutable_hello()->set_protocol_version(kProtocolVersion);
  hello.mutable_hello()->set_client_uuid(uuid);
  hello.mutable_hello()->set_program("test");
  if (Ask(hello).error() != 0) throw std::runtime_error("Kiln refused the client");
}

WireClient::~WireClient() {
  Close();
}

void WireClient::Close() {
  if (mSocket >= 0) close(mSocket);
  mSocket = -1;
}

void WireClient::SendBytes(const std::string& bytes) {
  // A Kiln that has closed is what some tests wait for.
  (void)!send(mSocket, bytes.data(), bytes.size(), MSG_NOSIGNAL);
}

void WireClient::Send(const wire::ClientMessage& request) {
  std::string frame;
  AppendFrame(request, frame);
  SendBytes(frame);
}

bool WireClient::Read(wire::ServerMessage& message) {
  std::string_view body;
  for (;;) {
    const FrameReader::Result result = mFrames.Next(body);
    if (result == FrameReader::Result::kTooLong) throw std::runtime_error("A frame that is too long");
    if (result == FrameReader::Result::kFrame) {
      return message.ParseFromArray(body.data(), static_cast<int>(body.size()));
    }
    char buffer[65536];
    const ssize_t count = recv(mSocket, buffer, sizeof buffer, 0);
    if (count < 0 && errno == EAGAIN) throw std::runtime_error("Kiln doesn't answer");
    if (count <= 0) return false;
    mFrames.Append(buffer, static_cast<size_t>(count));
  }
}

wire::ServerMessage WireClient::Ask(wire::ClientMessage request) {
  request.set_id(mNextID++);
  Send(request);
  wire::ServerMessage message;
  while (Read(message)) {
    if (message.reply_to() == request.id() && !message.has_progress() && !message.has_task_progress()) {
      return message;
    }
    if (message.has_progress()) {
      mProgress.push_back(message.progress());
    } else if (!message.has_task_progress()) {
      mEvents.push_back(message);
    }
  }
  throw std::runtime_error("Kiln closed the connection");
}

std::optional<wire::ServerMessage> WireClient::WaitForEvent(wire::ServerMessage::BodyCase kind) {
  for (;;) {
    while (!mEvents.empty()) {
      wire::ServerMessage event = mEvents.front();
      mEvents.pop_front();
      if (event.body_case() == kind) return event;
    }
    wire::ServerMessage message;
    if (!Read(message)) return std::nullopt;
    mEvents.push_back(message);
  }
}

bool WireClient::WaitForEnd() {
  wire::ServerMessage message;
  while (Read(message)) continue;
  return true;
}

wire::AddFilesReply WireClient::AddFiles(const std::vector<std::string>& paths) {
  wire::ClientMessage request;
  for (const std::string& path : paths) request.mutable_add_files()->add_paths(path);
  return Ask(request).add_files();
}

wire::ActivateDocumentFontsReply WireClient::OpenDocument(const std::vector<std::string>& names) {
  wire::ClientMessage request;
  for (const std::string& name : names) {
    request.mutable_activate_document_fonts()->add_fonts()->set_postscript_name(name);
  }
  return Ask(request).activate_document_fonts();
}

wire::ActivateFontsReply WireClient::Activate(std::vector<uint32_t> ids, wire::ActivationMode mode) {
  wire::ClientMessage request;
  for (const uint32_t id : ids) request.mutable_activate_fonts()->add_font_ids(id);
  request.mutable_activate_fonts()->set_mode(mode);
  return Ask(request).activate_fonts();
}

wire::DeactivateFontsReply WireClient::Deactivate(std::vector<uint32_t> ids, bool byHand) {
  wire::ClientMessage request;
  for (const uint32_t id : ids) request.mutable_deactivate_fonts()->add_font_ids(id);
  request.mutable_deactivate_fonts()->set_by_hand(byHand);
  return Ask(request).deactivate_fonts();
}

bool WireClient::Holds(uint32_t id) {
  wire::ClientMessage request;
  request.mutable_client_activation_states()->add_font_ids(id);
  return Ask(request).client_activation_states().activated(0);
}

wire::ActivationState WireClient::StateOf(uint32_t id) {
  wire::ClientMessage request;
  request.mutable_font_is_activated()->add_font_ids(id);
  return Ask(request).font_is_activated().states(0);
}

uint32_t WireClient::IdOf(const std::string& postScriptName) {
  wire::ClientMessage request;
  request.mutable_fonts_by_name()->set_name(postScriptName);
  const wire::FontsByNameReply reply = Ask(request).fonts_by_name();
  return reply.font_ids_size() > 0 ? reply.font_ids(0) : 0;
}
