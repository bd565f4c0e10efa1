#include "GLockable.h"

#include <algorithm>
#include <chrono>
#include <thread>

namespace {

constexpr unsigned int kPollIntervalMilliseconds = 50;

}  // namespace

TErrCode GLockable::TryLockWithTimeout(unsigned int milliseconds) {
  if (milliseconds == 0) return TryLock();
  TErrCode status = CoreErrorCodes::kSuccess;
  for (unsigned int remaining = milliseconds; remaining != 0;) {
    status = TryLock();
    if (status != kLockBusyErr) break;
    const unsigned int pause = std::min(kPollIntervalMilliseconds, remaining);
    std::this_thread::sleep_for(std::chrono::milliseconds(pause));
    remaining -= pause;
  }
  return status;
}
