#pragma once

#include <array>
#include <atomic>
#include <boost/asio/io_context.hpp>
#include <boost/asio/local/stream_protocol.hpp>
#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <string>

#include "kiln/system/BoundedLog.h"
#include "protocol/Framing.h"
#include "protocol/Kiln.pb.h"

namespace kiln {

/// One client's connection: bytes to messages and back. What the messages mean is the handlers' business, but
/// for pings: they are answered here, so that a Kiln at work doesn't look like one that is dead.
///
/// A peer that sends what is no message, or doesn't read what it is sent, loses its connection, with a log
/// line. One that sends faster than it is answered is read on when it has been answered.
///
/// Threads: the socket belongs to the thread of its own io_context, all else to that of `main`.
class Connection : public std::enable_shared_from_this<Connection> {
 public:
  using Socket = boost::asio::local::stream_protocol::socket;
  using OnMessage = std::function<void(const std::shared_ptr<Connection>&, const wire::ClientMessage&)>;
  using OnClosed = std::function<void(const std::shared_ptr<Connection>&)>;

  /// \param main  Where the callbacks run.
  /// \param pid  The peer's process, by the socket's credentials.
  Connection(boost::asio::io_context& main, Socket socket, pid_t pid, BoundedLog& log, OnMessage onMessage,
             OnClosed onClosed);

  /// Begins to read.
  void Start();
  /// Queues a message. A reply that is too long for a frame becomes kMessageTooLarge.
  void Send(const wire::ServerMessage& message);
  /// Sends what waits and closes.
  void SendRestAndClose();
  /// Closes at once; OnClosed is called once, however a connection ends.
  void Close();
  void CloseFor(const char* reason);

  pid_t Pid() const { return mPid; }
  /// Whether the client has hung up by now. What it asked before may still come in.
  bool PeerHasGone();

  // What the session's requests have told of the client.
  std::atomic<bool> saidHello = false;
  int64_t clientID = 0;  ///< 0 before Hello, and without a library
  std::string uuid;
  std::string program;
  int32_t hostType = 0;
  std::unique_ptr<BoundedLog> clientLog;

 private:
  // On the socket's thread.
  void Read();
  bool TakeFrames();
  void Take(wire::ClientMessage message, size_t size);
  void Enqueue(std::string frame);
  void Write();
  void End(const char* reason);
  void CloseSocket();
  template <class Step>
  void OnSocketThread(Step step);

  boost::asio::io_context& mMain;
  Socket mSocket;
  const pid_t mPid;
  BoundedLog& mLog;
  const OnMessage mOnMessage;
  OnClosed mOnClosed;
  std::mutex mDescriptor;  // held while it is closed, and while another thread looks at it
  std::atomic<bool> mMisbehaved = false;
  std::atomic<size_t> mUnansweredBytes = 0;  // of messages that wait for the main thread

  std::array<char, 65536> mBuffer{};
  FrameReader mFrames;
  std::deque<std::string> mQueue;
  size_t mQueuedBytes = 0;
  bool mCloseWhenSent = false;
  bool mReading = false;
};

}  // namespace kiln
