#include "CoreFoundation/CFRunLoopObject.h"

#include <poll.h>
#include <sys/eventfd.h>
#include <unistd.h>

#include <algorithm>
#include <cmath>

#include "CoreFoundation/CFStringObject.h"

namespace {

std::u16string CommonModesName() {
  return std::u16string(cf::TextOf(kCFRunLoopCommonModes));
}

}  // namespace

namespace cf {

std::mutex& RunLoopMutex() {
  static auto* const mutex = new std::mutex;
  return *mutex;
}

std::chrono::nanoseconds ToNanoseconds(CFTimeInterval seconds) {
  constexpr double kMost = 1e9;  // 31 years
  const double cut = std::isnan(seconds) ? 0 : std::clamp(seconds, -kMost, kMost);
  return std::chrono::nanoseconds(std::llround(cut * 1e9));
}

RunLoopTime ToRunLoopTime(CFAbsoluteTime date) {
  return std::chrono::steady_clock::now() + ToNanoseconds(date - CFAbsoluteTimeGetCurrent());
}

}  // namespace cf

__CFRunLoop::__CFRunLoop()
    : Object(kType),
      commonModes{std::u16string(cf::TextOf(kCFRunLoopDefaultMode))},
      wakeDescriptor_(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {}

__CFRunLoop::~__CFRunLoop() {
  Timers removed;
  {
    const std::lock_guard lock(cf::RunLoopMutex());
    for (auto& [mode, timers] : timers_) {
      for (RetainPtr<CFRunLoopTimerRef>& timer : timers) {
        timer.get()->loop = nullptr;
        removed.push_back(std::move(timer));
      }
    }
    timers_.clear();
  }
  if (wakeDescriptor_ >= 0) close(wakeDescriptor_);
}

CFRunLoopRunResult __CFRunLoop::Run(const std::u16string& mode, CFTimeInterval seconds,
                                    bool returnAfterTimers) {
  const cf::RunLoopTime end = std::chrono::steady_clock::now() + cf::ToNanoseconds(std::max(seconds, 0.0));
  Running run{mode};
  std::unique_lock lock(cf::RunLoopMutex());
  runs.push_back(&run);
  CFRunLoopRunResult result = kCFRunLoopRunFinished;
  for (;;) {
    // Held here, since a callback may remove any of them.
    Timers timers = TimersOf(mode);
    const auto isLater = [](const auto& a, const auto& b) { return a.get()->next < b.get()->next; };
    std::stable_sort(timers.begin(), timers.end(), isLater);
    const bool empty = timers.empty();
    bool fired = false;
    const cf::RunLoopTime now = std::chrono::steady_clock::now();
    for (const RetainPtr<CFRunLoopTimerRef>& timer : timers) {
      __CFRunLoopTimer* due = timer.get();
      if (run.stopped) break;
      if (!due->valid || due->firing || due->next > now || !Contains(due, mode)) continue;
      due->firing = true;
      const cf::RunLoopTime dueTime = due->next;
      lock.unlock();
      Fire(due, dueTime);
      lock.lock();
      fired = true;
    }
    cf::RunLoopTime wakeTime = end;
    for (const RetainPtr<CFRunLoopTimerRef>& timer : timers) {
      if (timer.get()->valid && !timer.get()->firing) wakeTime = std::min(wakeTime, timer.get()->next);
    }
    lock.unlock();
    timers.clear();
    lock.lock();
    if (run.stopped) {
      result = kCFRunLoopRunStopped;
      break;
    }
    if (empty) break;
    if (fired && returnAfterTimers) {
      result = kCFRunLoopRunHandledSource;
      break;
    }
    if (std::chrono::steady_clock::now() >= end) {
      result = kCFRunLoopRunTimedOut;
      break;
    }
    // A callback may have added timers, or there may be none left: look again before waiting.
    if (fired) continue;
    waiting = true;
    lock.unlock();
    WaitUntil(wakeTime);
    lock.lock();
    waiting = false;
  }
  std::erase(runs, &run);
  return result;
}

void __CFRunLoop::Fire(__CFRunLoopTimer* timer, cf::RunLoopTime dueTime) {
  timer->callBack(timer, timer->context.info);
  bool valid = true;
  {
    const std::lock_guard lock(cf::RunLoopMutex());
    timer->firing = false;
    valid = timer->valid;
    // The callback may have set another time.
    if (timer->Repeats() && timer->next == dueTime) timer->Advance();
  }
  if (!valid) {
    timer->ReleaseInfo();
  } else if (!timer->Repeats()) {
    CFRunLoopTimerInvalidate(timer);
  }
}

void __CFRunLoop::WaitUntil(cf::RunLoopTime time) {
  const auto left = std::max(std::chrono::nanoseconds(time - std::chrono::steady_clock::now()),
                             std::chrono::nanoseconds(0));
  const auto whole = std::chrono::floor<std::chrono::seconds>(left);
  const timespec timeout = {whole.count(), (left - whole).count()};
  pollfd wake = {wakeDescriptor_, POLLIN, 0};
  if (ppoll(&wake, 1, &timeout, nullptr) > 0) {
    eventfd_t ignored = 0;
    eventfd_read(wakeDescriptor_, &ignored);
  }
}

void __CFRunLoop::Wake() const {
  eventfd_write(wakeDescriptor_, 1);
}

__CFRunLoop::Timers __CFRunLoop::TimersOf(const std::u16string& mode) const {
  Timers result;
  if (const auto found = timers_.find(mode); found != timers_.end()) result = found->second;
  if (!commonModes.contains(mode)) return result;
  if (const auto found = timers_.find(CommonModesName()); found != timers_.end()) {
    for (const RetainPtr<CFRunLoopTimerRef>& timer : found->second) {
      if (std::find(result.begin(), result.end(), timer) == result.end()) result.push_back(timer);
    }
  }
  return result;
}

bool __CFRunLoop::Contains(__CFRunLoopTimer* timer, const std::u16string& mode) const {
  const auto holds = [&](const std::u16string& name) {
    const auto found = timers_.find(name);
    return found != timers_.end() && std::any_of(found->second.begin(), found->second.end(),
                                                 [timer](const auto& held) { return held.get() == timer; });
  };
  return holds(mode) || (commonModes.contains(mode) && holds(CommonModesName()));
}

void __CFRunLoop::Add(__CFRunLoopTimer* timer, const std::u16string& mode) {
  Timers& timers = timers_[mode];
  const auto same = [timer](const auto& held) { return held.get() == timer; };
  if (std::none_of(timers.begin(), timers.end(), same)) timers.push_back(retainCF<CFRunLoopTimerRef>(timer));
  timer->loop = this;
}

void __CFRunLoop::Remove(__CFRunLoopTimer* timer, const std::u16string* mode, Timers* removed) {
  bool left = false;
  for (auto& [name, timers] : timers_) {
    const auto found =
        std::find_if(timers.begin(), timers.end(), [timer](const auto& held) { return held.get() == timer; });
    if (found == timers.end()) continue;
    if (mode != nullptr && name != *mode) {
      left = true;
      continue;
    }
    removed->push_back(std::move(*found));
    timers.erase(found);
  }
  if (!left) timer->loop = nullptr;
}
