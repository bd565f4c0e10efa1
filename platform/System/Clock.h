#pragma once

#include <chrono>

namespace platform {

/// The two clocks and the wait, so that tests can let time pass without waiting.
///
/// Thread: any.
class Clock {
 public:
  virtual ~Clock() = default;

  /// Only ever goes forward: for deadlines and durations.
  virtual std::chrono::steady_clock::time_point Now();
  /// May be set by the user: for time stamps.
  virtual std::chrono::system_clock::time_point WallNow();
  virtual void Sleep(std::chrono::nanoseconds duration);

  /// The operating system's, unless a test has put another in its place.
  static Clock& Get();
  /// \param replacement  Not owned; null brings the operating system's back.
  /// \return What was in place, null for the operating system's.
  static Clock* Replace(Clock* replacement);
};

}  // namespace platform
