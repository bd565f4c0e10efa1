#include "System/Clock.h"

#include <atomic>
#include <thread>

namespace platform {

namespace {
std::atomic<Clock*> replaced{nullptr};
}  // namespace

std::chrono::steady_clock::time_point Clock::Now() {
  return std::chrono::steady_clock::now();
}

std::chrono::system_clock::time_point Clock::WallNow() {
  return std::chrono::system_clock::now();
}

void Clock::Sleep(std::chrono::nanoseconds duration) {
  std::this_thread::sleep_for(duration);
}

Clock& Clock::Get() {
  static Clock real;
  Clock* replacement = replaced.load();
  return replacement != nullptr ? *replacement : real;
}

Clock* Clock::Replace(Clock* replacement) {
  return replaced.exchange(replacement);
}

}  // namespace platform
