#pragma once

#include <CoreFoundation/CFRunLoopTimer.h>

#include <chrono>
#include <map>
#include <mutex>
#include <set>
#include <string>
#include <vector>

#include "CoreFoundation/CFRuntime.h"
#include "Memory/RetainPtr.h"

namespace cf {

using RunLoopTime = std::chrono::steady_clock::time_point;

/// Guards all run loops and timers: what is done under it is short, and never calls out.
std::mutex& RunLoopMutex();

/// An interval as the clock counts it; one that is too long for the clock (or no number) is cut.
std::chrono::nanoseconds ToNanoseconds(CFTimeInterval seconds);

/// When the wall clock will show `date`.
RunLoopTime ToRunLoopTime(CFAbsoluteTime date);

}  // namespace cf

struct __CFRunLoopTimer final : cf::Object {
  static constexpr cf::TypeNumber kType = cf::kRunLoopTimerType;

  __CFRunLoopTimer(cf::RunLoopTime first, CFTimeInterval seconds, CFRunLoopTimerCallBack function,
                   const CFRunLoopTimerContext* given);
  ~__CFRunLoopTimer() override { ReleaseInfo(); }

  bool Repeats() const { return interval > std::chrono::nanoseconds(0); }
  /// Moves `next` to the next time of the rhythm after now.
  void Advance();
  /// Once it is invalid, and its callback doesn't run.
  void ReleaseInfo();

  const std::chrono::nanoseconds interval;
  const CFRunLoopTimerCallBack callBack;
  CFRunLoopTimerContext context{};

  // Under the mutex:
  cf::RunLoopTime next;
  bool valid = true;
  bool firing = false;
  __CFRunLoop* loop = nullptr;
};

struct __CFRunLoop final : cf::Object {
  static constexpr cf::TypeNumber kType = cf::kRunLoopType;
  using Timers = std::vector<RetainPtr<CFRunLoopTimerRef>>;

  __CFRunLoop();
  ~__CFRunLoop() override;

  CFRunLoopRunResult Run(const std::u16string& mode, CFTimeInterval seconds, bool returnAfterTimers);
  void Wake() const;

  // The operations below are called under the mutex.
  bool Contains(__CFRunLoopTimer* timer, const std::u16string& mode) const;
  void Add(__CFRunLoopTimer* timer, const std::u16string& mode);
  /// Takes the timer from the mode, or from all with null. What it held goes to `removed`, to be released
  /// without the mutex.
  void Remove(__CFRunLoopTimer* timer, const std::u16string* mode, Timers* removed);

  struct Running {
    std::u16string mode;
    bool stopped = false;
  };
  /// The innermost last.
  std::vector<Running*> runs;
  std::set<std::u16string> commonModes;
  bool waiting = false;

 private:
  Timers TimersOf(const std::u16string& mode) const;
  /// Calls the timer, which is marked as firing.
  static void Fire(__CFRunLoopTimer* timer, cf::RunLoopTime dueTime);
  void WaitUntil(cf::RunLoopTime time);

  int wakeDescriptor_;
  // By mode; the name of the common modes stands for all of them.
  std::map<std::u16string, Timers> timers_;
};
