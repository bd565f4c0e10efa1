#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace google::protobuf {
class MessageLite;
}

namespace kiln {

/// Longest frame body, in bytes. A reply with the records of 20,000 matched fonts fits.
inline constexpr uint32_t kMaxFrameLength = 32u << 20;
/// Length of the length in front of each body.
inline constexpr size_t kFrameHeaderLength = 4;
/// What may wait for a client that doesn't read, before its connection is dropped.
inline constexpr size_t kMaxQueuedBytes = 64u << 20;

/// Appends one frame with `message` to `out`.
/// \return False, with `out` as it was, for a message longer than kMaxFrameLength.
bool AppendFrame(const google::protobuf::MessageLite& message, std::string& out);

/// Cuts a stream of bytes into frames.
///
/// Feed it what comes in, in pieces of any size, and take the frames out until Next() says that it needs
/// more. Memory is bounded by one frame and the largest piece fed. Thread: one at a time.
class FrameReader {
 public:
  enum class Result {
    kFrame,     ///< `body` is the next frame's; valid until the next call of Append() or Next().
    kNeedMore,  ///< No whole frame has come in yet.
    kTooLong,   ///< The peer announces more than kMaxFrameLength; the stream can't be read on.
  };

  void Append(const char* data, size_t length);
  Result Next(std::string_view& body);

 private:
  std::string mBuffer;
  size_t mTaken = 0;  // bytes at the front that were given out
};

}  // namespace kiln
