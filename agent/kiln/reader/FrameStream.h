#pragma once

#include <google/protobuf/message_lite.h>

namespace kiln {

/// Frames over a pair of plain descriptors, as KilnFontReader has them.

/// Waits for the next frame. False at the end of the stream and on anything that is no such message.
bool ReadFrame(int descriptor, google::protobuf::MessageLite& message);

/// Waits until all is written. False when the reader has gone.
bool WriteFrame(int descriptor, const google::protobuf::MessageLite& message);

}  // namespace kiln
