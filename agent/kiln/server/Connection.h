#pragma once

#include <array>
#include <boost/asio/local/stream_protocol.hpp>
#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <string>

#include "kiln/system/BoundedLog.h"
#include "protocol/Framing.h"
#include "protocol/Kiln.pb.h"

namespace kiln {

/// One client's connection: bytes to messages and back. What the messages mean is the handlers' business.
///
/// A peer that sends what is no message, or doesn't read what it is sent, loses its connection, with a log
/// line.
class Connection : public std::enable_shared_from_this<Connection> {
 public:
  using Socket = boost::asio::local::stream_protocol::socket;
  using OnMessage = std::function<void(const std::shared_ptr<Connection>&, const wire::ClientMessage&)>;
  using OnClosed = std::function<void(const std::shared_ptr<Connection>&)>;

  /// \param pid  The peer's process, by the socket's credentials.
  Connection(Socket socket, pid_t pid, BoundedLog& log, OnMessage onMessage, OnClosed onClosed);

  /// Begins to read.
  void Start();
  /// Queues a message. A reply that is too long for a frame becomes kMessageTooLarge.
  void Send(const wire::ServerMessage& message);
  /// Sends what waits, for a moment at most, and closes.
  void SendRestAndClose();
  /// Closes at once; OnClosed is called once, however a connection ends.
  void Close();
  void CloseFor(const char* reason);

  pid_t Pid() const { return mPid; }

  // What the session's requests have told of the client.
  bool saidHello = false;
  int64_t clientID = 0;  ///< 0 before Hello, and without a library
  std::string uuid;
  std::string program;
  int32_t hostType = 0;
  std::unique_ptr<BoundedLog> clientLog;

 private:
  void Read();
  bool TakeFrames();
  void Write();

  Socket mSocket;
  const pid_t mPid;
  BoundedLog& mLog;
  const OnMessage mOnMessage;
  OnClosed mOnClosed;
  std::array<char, 65536> mBuffer{};
  FrameReader mFrames;
  std::deque<std::string> mQueue;
  size_t mQueuedBytes = 0;
  bool mCloseWhenSent = false;
};

}  // namespace kiln
