#include "kiln/server/Connection.h"

#include <poll.h>

#include <boost/asio/post.hpp>
#include <boost/asio/write.hpp>
#include <utility>

#include "kiln/server/RequestLimits.h"
#include "protocol/ErrorCodes.h"

namespace kiln {
namespace {

// What a client may have asked before it is read on.
constexpr size_t kMostUnansweredBytes = kMaxFrameLength;
// How much a message counts beside its text: many small ones are much work as well.
constexpr size_t kMessageOverhead = kMostUnansweredBytes / 128;

}  // namespace

Connection::Connection(boost::asio::io_context& main, Socket socket, pid_t pid, BoundedLog& log,
                       OnMessage onMessage, OnClosed onClosed)
    : mMain(main),
      mSocket(std::move(socket)),
      mPid(pid),
      mLog(log),
      mOnMessage(std::move(onMessage)),
      mOnClosed(std::move(onClosed)) {}

template <class Step>
void Connection::OnSocketThread(Step step) {
  boost::asio::post(mSocket.get_executor(),
                    [self = shared_from_this(), step = std::move(step)]() mutable { step(*self); });
}

void Connection::Start() {
  OnSocketThread([](Connection& self) { self.Read(); });
}

void Connection::Read() {
  if (std::exchange(mReading, true) || !mSocket.is_open()) return;
  mSocket.async_read_some(boost::asio::buffer(mBuffer),
                          [self = shared_from_this()](auto error, size_t count) {
                            self->mReading = false;
                            if (error) return self->End(nullptr);
                            self->mFrames.Append(self->mBuffer.data(), count);
                            if (!self->TakeFrames()) return;
                            if (self->mUnansweredBytes < kMostUnansweredBytes) self->Read();
                          });
}

// False when the connection has ended.
bool Connection::TakeFrames() {
  std::string_view body;
  while (mSocket.is_open()) {
    switch (mFrames.Next(body)) {
      case FrameReader::Result::kNeedMore:
        return true;
      case FrameReader::Result::kTooLong:
        End("it announced a message that is too long");
        return false;
      case FrameReader::Result::kFrame:
        break;
    }
    if (HasTooManyEntries(body)) {
      End("it sent a list that is too long");
      return false;
    }
    wire::ClientMessage message;
    if (!message.ParseFromArray(body.data(), static_cast<int>(body.size())) || message.id() == 0) {
      End("it sent what is no message");
      return false;
    }
    Take(std::move(message), body.size() + kMessageOverhead);
  }
  return false;
}

void Connection::Take(wire::ClientMessage message, size_t size) {
  if (message.has_ping() && saidHello) {
    wire::ServerMessage reply;
    reply.set_reply_to(message.id());
    std::string frame;
    AppendFrame(reply, frame);
    return Enqueue(std::move(frame));
  }
  mUnansweredBytes += size;
  boost::asio::post(mMain, [self = shared_from_this(), message = std::move(message), size] {
    if (self->mOnClosed && !self->mMisbehaved) self->mOnMessage(self, message);
    self->mUnansweredBytes -= size;
    self->OnSocketThread([](Connection& here) {
      if (here.mUnansweredBytes < kMostUnansweredBytes) here.Read();
    });
  });
}

// Asked of the system: the reading of the end may be behind what is worked on now.
bool Connection::PeerHasGone() {
  const std::scoped_lock lock(mDescriptor);
  if (!mSocket.is_open()) return true;
  pollfd peer{mSocket.native_handle(), 0, 0};
  return poll(&peer, 1, 0) > 0 && (peer.revents & POLLHUP) != 0;
}

void Connection::CloseSocket() {
  const std::scoped_lock lock(mDescriptor);
  boost::system::error_code ignored;
  mSocket.close(ignored);
}

void Connection::Send(const wire::ServerMessage& message) {
  std::string frame;
  if (!AppendFrame(message, frame)) {
    wire::ServerMessage refusal;
    refusal.set_reply_to(message.reply_to());
    refusal.set_error(codes::kMessageTooLarge);
    AppendFrame(refusal, frame);
  }
  OnSocketThread([frame = std::move(frame)](Connection& self) mutable { self.Enqueue(std::move(frame)); });
}

void Connection::Enqueue(std::string frame) {
  if (!mSocket.is_open()) return;
  if (mQueuedBytes + frame.size() > kMaxQueuedBytes) return End("it doesn't read what it is sent");
  mQueuedBytes += frame.size();
  mQueue.push_back(std::move(frame));
  if (mQueue.size() == 1) Write();
}

void Connection::Write() {
  boost::asio::async_write(mSocket, boost::asio::buffer(mQueue.front()),
                           [self = shared_from_this()](auto error, size_t) {
                             if (error) return self->End(nullptr);
                             self->mQueuedBytes -= self->mQueue.front().size();
                             self->mQueue.pop_front();
                             if (!self->mQueue.empty()) {
                               self->Write();
                             } else if (self->mCloseWhenSent) {
                               self->End(nullptr);
                             }
                           });
}

void Connection::SendRestAndClose() {
  OnSocketThread([](Connection& self) {
    self.mCloseWhenSent = true;
    if (self.mQueue.empty()) self.End(nullptr);
  });
}

// What a peer asked before it hung up is still done, but for one that is thrown out.
void Connection::End(const char* reason) {
  if (reason != nullptr) mMisbehaved = true;  // the reading that this ends comes here, too
  CloseSocket();
  boost::asio::post(mMain, [self = shared_from_this(), reason] {
    if (reason == nullptr) return self->Close();
    self->CloseFor(reason);
  });
}

void Connection::Close() {
  const OnClosed onClosed = std::exchange(mOnClosed, nullptr);
  if (!onClosed) return;
  OnSocketThread([](Connection& self) { self.CloseSocket(); });
  onClosed(shared_from_this());
}

void Connection::CloseFor(const char* reason) {
  if (!mOnClosed) return;
  mLog.Print("The connection of process %d ('%s') was closed: %s", mPid, program.c_str(), reason);
  Close();
}

}  // namespace kiln
