#include "CoreFoundation/CFRunLoopTimer.h"

#include <algorithm>
#include <utility>

#include "CoreFoundation/CFRunLoopObject.h"

using cf::Cast;
using std::chrono::nanoseconds;
using std::chrono::steady_clock;

__CFRunLoopTimer::__CFRunLoopTimer(cf::RunLoopTime first, CFTimeInterval seconds,
                                   CFRunLoopTimerCallBack function, const CFRunLoopTimerContext* given)
    : Object(kType),
      interval(seconds > 0 ? std::max(cf::ToNanoseconds(seconds), nanoseconds(1)) : nanoseconds(0)),
      callBack(function),
      next(first) {
  if (given != nullptr) context = *given;
  if (context.retain != nullptr && context.info != nullptr)
    context.info = const_cast<void*>(context.retain(context.info));
}

void __CFRunLoopTimer::Advance() {
  const nanoseconds late = steady_clock::now() - next;
  next += interval * (late < nanoseconds(0) ? 1 : late / interval + 1);
}

void __CFRunLoopTimer::ReleaseInfo() {
  const auto release = std::exchange(context.release, nullptr);
  if (release != nullptr && context.info != nullptr) release(context.info);
}

CFTypeID CFRunLoopTimerGetTypeID() {
  return cf::kRunLoopTimerType;
}

CFRunLoopTimerRef CFRunLoopTimerCreate(CFAllocatorRef, CFAbsoluteTime fireDate, CFTimeInterval interval,
                                       CFOptionFlags, CFIndex, CFRunLoopTimerCallBack callBack,
                                       CFRunLoopTimerContext* context) {
  if (callBack == nullptr) return nullptr;
  return new __CFRunLoopTimer(cf::ToRunLoopTime(fireDate), interval, callBack, context);
}

void CFRunLoopTimerInvalidate(CFRunLoopTimerRef timer) {
  if (Cast<__CFRunLoopTimer>(timer) == nullptr) return;
  bool firing = false;
  // The loop's reference may be the last.
  const auto kept = retainCF(timer);
  __CFRunLoop::Timers removed;
  {
    const std::lock_guard lock(cf::RunLoopMutex());
    if (!std::exchange(timer->valid, false)) return;
    firing = timer->firing;
    if (timer->loop != nullptr) timer->loop->Remove(timer, nullptr, &removed);
  }
  // A callback that runs still needs it, and gives it up itself.
  if (!firing) timer->ReleaseInfo();
}

Boolean CFRunLoopTimerIsValid(CFRunLoopTimerRef timer) {
  if (Cast<__CFRunLoopTimer>(timer) == nullptr) return false;
  const std::lock_guard lock(cf::RunLoopMutex());
  return timer->valid;
}

CFTimeInterval CFRunLoopTimerGetInterval(CFRunLoopTimerRef timer) {
  const auto* source = Cast<__CFRunLoopTimer>(timer);
  return source == nullptr ? 0 : std::chrono::duration<double>(source->interval).count();
}

CFAbsoluteTime CFRunLoopTimerGetNextFireDate(CFRunLoopTimerRef timer) {
  if (Cast<__CFRunLoopTimer>(timer) == nullptr) return 0;
  const std::lock_guard lock(cf::RunLoopMutex());
  if (!timer->valid) return 0;
  return CFAbsoluteTimeGetCurrent() +
         std::chrono::duration<double>(timer->next - steady_clock::now()).count();
}

void CFRunLoopTimerSetNextFireDate(CFRunLoopTimerRef timer, CFAbsoluteTime fireDate) {
  if (Cast<__CFRunLoopTimer>(timer) == nullptr) return;
  const std::lock_guard lock(cf::RunLoopMutex());
  timer->next = cf::ToRunLoopTime(fireDate);
  if (timer->loop != nullptr) timer->loop->Wake();
}

Boolean CFRunLoopTimerDoesRepeat(CFRunLoopTimerRef timer) {
  const auto* source = Cast<__CFRunLoopTimer>(timer);
  return source != nullptr && source->Repeats();
}
