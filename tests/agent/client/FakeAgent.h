#pragma once

#include <sys/types.h>

#include <atomic>
#include <functional>
#include <map>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "protocol/Kiln.pb.h"

/// An agent in a thread of the test, on the session's socket (PrivateHome first). It greets back and answers
/// what the test tells it to; or it misbehaves on the wire, byte by byte.
class FakeAgent {
 public:
  using Request = kiln::wire::ClientMessage;
  using Reply = kiln::wire::ServerMessage;
  /// Fills the reply to a request; its id is set already.
  using Answer = std::function<void(const Request&, Reply&)>;
  /// Does what it likes with a connection's descriptor, which is closed when it returns.
  using Behaviour = std::function<void(int)>;

  /// Well-behaved.
  explicit FakeAgent(Answer answer = {});
  static FakeAgent Misbehaving(Behaviour behaviour) { return FakeAgent(std::move(behaviour), 0); }
  ~FakeAgent();
  FakeAgent(const FakeAgent&) = delete;

  /// Sends an event on every connection.
  void SendEvent(Reply event);
  /// Breaks all connections; the socket stays.
  void BreakConnections();

  std::vector<Request> Requests() const;
  /// How many requests of a kind came.
  int Count(Request::BodyCase kind) const;

  static Reply ReplyTo(uint32_t id);
  static bool SendFrame(int socket, const Reply& message);
  static bool SendBytes(int socket, const std::string& bytes);
  /// False at the end of the connection.
  static bool ReceiveFrame(int socket, Request& request);
  /// Reads until the other side closes.
  static void Drain(int socket);
  static bool Greet(int socket);

 private:
  FakeAgent(Behaviour behaviour, int);
  void Listen();
  void Serve(int socket);

  Answer m_answer;
  Behaviour m_behaviour;
  int m_listener = -1;
  ino_t m_socketFile = 0;
  std::thread m_acceptor;
  mutable std::mutex m_mutex;
  std::map<int, std::thread> m_connections;
  std::vector<Request> m_requests;
};
