#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace kiln {

/// A log file that can't fill the disk: when it passes its bound, it becomes `<name>.1`, in place of the one
/// that had that name, and a new one begins. A log that can't be written is silent.
class BoundedLog {
 public:
  explicit BoundedLog(std::string path, uint64_t bound = 1u << 20);
  ~BoundedLog();
  BoundedLog(const BoundedLog&) = delete;
  BoundedLog& operator=(const BoundedLog&) = delete;

  /// Also writes each line to standard error from now on.
  void EchoToTerminal() { mEcho = true; }

  /// One line, with the time in front. Control characters in it become blanks, so that no text of a client's
  /// can look like a line of its own.
  void Write(std::string_view text);

  /// As printf().
  void Print(const char* format, ...) __attribute__((format(printf, 2, 3)));

 private:
  void Open();

  const std::string mPath;
  const uint64_t mBound;
  uint64_t mSize = 0;
  int mFile = -1;
  bool mEcho = false;
};

}  // namespace kiln
