#include "kiln/server/Connection.h"

#include <boost/asio/write.hpp>
#include <utility>

#include "protocol/ErrorCodes.h"

namespace kiln {

Connection::Connection(Socket socket, pid_t pid, BoundedLog& log, OnMessage onMessage, OnClosed onClosed)
    : mSocket(std::move(socket)),
      mPid(pid),
      mLog(log),
      mOnMessage(std::move(onMessage)),
      mOnClosed(std::move(onClosed)) {}

void Connection::Start() {
  Read();
}

void Connection::Read() {
  mSocket.async_read_some(boost::asio::buffer(mBuffer),
                          [self = shared_from_this()](auto error, size_t count) {
                            if (error) return self->Close();
                            self->mFrames.Append(self->mBuffer.data(), count);
                            if (self->TakeFrames()) self->Read();
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
        CloseFor("it announced a message that is too long");
        return false;
      case FrameReader::Result::kFrame:
        break;
    }
    wire::ClientMessage message;
    if (!message.ParseFromArray(body.data(), static_cast<int>(body.size())) || message.id() == 0) {
      CloseFor("it sent what is no message");
      return false;
    }
    mOnMessage(shared_from_this(), message);
  }
  return false;
}

void Connection::Send(const wire::ServerMessage& message) {
  if (!mSocket.is_open()) return;
  std::string frame;
  if (!AppendFrame(message, frame)) {
    wire::ServerMessage refusal;
    refusal.set_reply_to(message.reply_to());
    refusal.set_error(codes::kMessageTooLarge);
    AppendFrame(refusal, frame);
  }
  if (mQueuedBytes + frame.size() > kMaxQueuedBytes) return CloseFor("it doesn't read what it is sent");
  mQueuedBytes += frame.size();
  mQueue.push_back(std::move(frame));
  if (mQueue.size() == 1) Write();
}

void Connection::Write() {
  boost::asio::async_write(mSocket, boost::asio::buffer(mQueue.front()),
                           [self = shared_from_this()](auto error, size_t) {
                             if (error) return self->Close();
                             self->mQueuedBytes -= self->mQueue.front().size();
                             self->mQueue.pop_front();
                             if (!self->mQueue.empty()) {
                               self->Write();
                             } else if (self->mCloseWhenSent) {
                               self->Close();
                             }
                           });
}

void Connection::SendRestAndClose() {
  mCloseWhenSent = true;
  if (mQueue.empty()) Close();
}

void Connection::Close() {
  boost::system::error_code ignored;
  mSocket.close(ignored);
  if (const OnClosed onClosed = std::exchange(mOnClosed, nullptr)) onClosed(shared_from_this());
}

void Connection::CloseFor(const char* reason) {
  mLog.Print("The connection of process %d ('%s') was closed: %s", mPid, program.c_str(), reason);
  Close();
}

}  // namespace kiln
