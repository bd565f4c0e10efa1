#include "CoreFoundation/CFRunLoop.h"

#include <unistd.h>

#include "CoreFoundation/CFRunLoopObject.h"
#include "CoreFoundation/CFStringObject.h"

using cf::Cast;

const CFRunLoopMode kCFRunLoopDefaultMode = CFSTR("kCFRunLoopDefaultMode");
const CFRunLoopMode kCFRunLoopCommonModes = CFSTR("kCFRunLoopCommonModes");

namespace {

/// A loop, a timer and a mode that belong together; all null otherwise.
struct Checked {
  Checked(CFRunLoopRef givenLoop, CFRunLoopTimerRef givenTimer, CFRunLoopMode givenMode) {
    const auto* name = Cast<__CFString>(givenMode);
    if (Cast<__CFRunLoop>(givenLoop) == nullptr || Cast<__CFRunLoopTimer>(givenTimer) == nullptr ||
        name == nullptr) {
      return;
    }
    loop = givenLoop;
    timer = givenTimer;
    mode = name->text;
  }

  __CFRunLoop* loop = nullptr;
  __CFRunLoopTimer* timer = nullptr;
  std::u16string mode;
};

/// Never counted as a live object: the platform makes it, and it goes with its thread.
__CFRunLoop* NewLoop() {
  const cf::UncountedScope uncounted;
  return new __CFRunLoop;
}

}  // namespace

CFTypeID CFRunLoopGetTypeID() {
  return cf::kRunLoopType;
}

CFRunLoopRef CFRunLoopGetMain() {
  static __CFRunLoop* const loop = [] {
    __CFRunLoop* made = NewLoop();
    made->MakeConstant();
    return made;
  }();
  return loop;
}

CFRunLoopRef CFRunLoopGetCurrent() {
  if (gettid() == getpid()) return CFRunLoopGetMain();
  thread_local const RetainPtr<CFRunLoopRef> loop = adoptCF<CFRunLoopRef>(NewLoop());
  return loop.get();
}

void CFRunLoopRun() {
  constexpr CFTimeInterval kForever = 1e9;
  while (CFRunLoopRunInMode(kCFRunLoopDefaultMode, kForever, false) == kCFRunLoopRunTimedOut) {
  }
}

CFRunLoopRunResult CFRunLoopRunInMode(CFRunLoopMode mode, CFTimeInterval seconds,
                                      Boolean returnAfterSourceHandled) {
  const auto* name = Cast<__CFString>(mode);
  if (name == nullptr || CFEqual(mode, kCFRunLoopCommonModes)) return kCFRunLoopRunFinished;
  const auto loop = retainCF(CFRunLoopGetCurrent());
  return loop.get()->Run(name->text, seconds, returnAfterSourceHandled);
}

void CFRunLoopStop(CFRunLoopRef loop) {
  if (Cast<__CFRunLoop>(loop) == nullptr) return;
  {
    const std::lock_guard lock(cf::RunLoopMutex());
    if (!loop->runs.empty()) loop->runs.back()->stopped = true;
  }
  loop->Wake();
}

void CFRunLoopWakeUp(CFRunLoopRef loop) {
  if (Cast<__CFRunLoop>(loop) != nullptr) loop->Wake();
}

Boolean CFRunLoopIsWaiting(CFRunLoopRef loop) {
  if (Cast<__CFRunLoop>(loop) == nullptr) return false;
  const std::lock_guard lock(cf::RunLoopMutex());
  return loop->waiting;
}

CFRunLoopMode CFRunLoopCopyCurrentMode(CFRunLoopRef loop) {
  if (Cast<__CFRunLoop>(loop) == nullptr) return nullptr;
  const std::lock_guard lock(cf::RunLoopMutex());
  return loop->runs.empty() ? nullptr : cf::NewString(loop->runs.back()->mode);
}

void CFRunLoopAddCommonMode(CFRunLoopRef loop, CFRunLoopMode mode) {
  const auto* name = Cast<__CFString>(mode);
  if (Cast<__CFRunLoop>(loop) == nullptr || name == nullptr || CFEqual(mode, kCFRunLoopCommonModes)) return;
  {
    const std::lock_guard lock(cf::RunLoopMutex());
    loop->commonModes.insert(name->text);
  }
  loop->Wake();
}

void CFRunLoopAddTimer(CFRunLoopRef loop, CFRunLoopTimerRef timer, CFRunLoopMode mode) {
  const Checked checked(loop, timer, mode);
  if (checked.loop == nullptr) return;
  {
    const std::lock_guard lock(cf::RunLoopMutex());
    if (!timer->valid || (timer->loop != nullptr && timer->loop != loop)) return;
    loop->Add(timer, checked.mode);
  }
  loop->Wake();
}

void CFRunLoopRemoveTimer(CFRunLoopRef loop, CFRunLoopTimerRef timer, CFRunLoopMode mode) {
  const Checked checked(loop, timer, mode);
  if (checked.loop == nullptr) return;
  __CFRunLoop::Timers removed;
  const std::lock_guard lock(cf::RunLoopMutex());
  if (timer->loop == loop) loop->Remove(timer, &checked.mode, &removed);
}

Boolean CFRunLoopContainsTimer(CFRunLoopRef loop, CFRunLoopTimerRef timer, CFRunLoopMode mode) {
  const Checked checked(loop, timer, mode);
  if (checked.loop == nullptr) return false;
  const std::lock_guard lock(cf::RunLoopMutex());
  return loop->Contains(timer, checked.mode);
}
