#include "protocol/Framing.h"

#include <google/protobuf/message_lite.h>

namespace kiln {

bool AppendFrame(const google::protobuf::MessageLite& message, std::string& out) {
  const size_t length = message.ByteSizeLong();
  if (length > kMaxFrameLength) return false;
  const size_t before = out.size();
  out.reserve(before + kFrameHeaderLength + length);
  for (int shift = 24; shift >= 0; shift -= 8) out.push_back(static_cast<char>((length >> shift) & 0xFF));
  if (message.AppendPartialToString(&out)) return true;
  out.resize(before);
  return false;
}

void FrameReader::Append(const char* data, size_t length) {
  if (mTaken > 0) {
    mBuffer.erase(0, mTaken);
    mTaken = 0;
  }
  mBuffer.append(data, length);
}

FrameReader::Result FrameReader::Next(std::string_view& body) {
  const std::string_view rest = std::string_view(mBuffer).substr(mTaken);
  if (rest.size() < kFrameHeaderLength) return Result::kNeedMore;
  uint32_t length = 0;
  for (size_t i = 0; i < kFrameHeaderLength; ++i)
    length = (length << 8) | static_cast<unsigned char>(rest[i]);
  if (length > kMaxFrameLength) return Result::kTooLong;
  if (rest.size() - kFrameHeaderLength < length) return Result::kNeedMore;
  body = rest.substr(kFrameHeaderLength, length);
  mTaken += kFrameHeaderLength + length;
  return Result::kFrame;
}

}  // namespace kiln
