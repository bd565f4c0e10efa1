#include "kiln/reader/FrameStream.h"

#include <unistd.h>

#include <cerrno>
#include <string>
#include <string_view>

#include "protocol/Framing.h"

namespace kiln {
namespace {

bool ReadFully(int descriptor, char* out, size_t length) {
  while (length > 0) {
    const ssize_t count = read(descriptor, out, length);
    if (count < 0 && errno == EINTR) continue;
    if (count <= 0) return false;
    out += count;
    length -= static_cast<size_t>(count);
  }
  return true;
}

}  // namespace

bool ReadFrame(int descriptor, google::protobuf::MessageLite& message) {
  unsigned char header[kFrameHeaderLength];
  if (!ReadFully(descriptor, reinterpret_cast<char*>(header), sizeof header)) return false;
  uint32_t length = 0;
  for (const unsigned char byte : header) length = (length << 8) | byte;
  if (length > kMaxFrameLength) return false;
  std::string body(length, '\0');
  return ReadFully(descriptor, body.data(), body.size()) && message.ParseFromString(body);
}

bool WriteFrame(int descriptor, const google::protobuf::MessageLite& message) {
  std::string frame;
  if (!AppendFrame(message, frame)) return false;
  std::string_view rest = frame;
  while (!rest.empty()) {
    const ssize_t count = write(descriptor, rest.data(), rest.size());
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) return false;
    rest.remove_prefix(static_cast<size_t>(count));
  }
  return true;
}

}  // namespace kiln
