#include "NotificationTimer.h"

namespace {

constexpr CFTimeInterval kInterval = 0.01;  // seconds

}  // namespace

NotificationTimer::NotificationTimer(CFRunLoopTimerCallBack callback) : m_callback(callback) {
  installTimer();
}

NotificationTimer::~NotificationTimer() {
  uninstallTimer();
}

void NotificationTimer::installTimer() {
  if (timerRef) return;
  timerRef = adoptCF(CFRunLoopTimerCreate(kCFAllocatorDefault, CFAbsoluteTimeGetCurrent() + kInterval,
                                          kInterval, 0, 0, m_callback, nullptr));
  if (timerRef) CFRunLoopAddTimer(CFRunLoopGetMain(), timerRef.get(), kCFRunLoopCommonModes);
}

void NotificationTimer::uninstallTimer() {
  if (!timerRef) return;
  CFRunLoopTimerInvalidate(timerRef.get());
  timerRef = nullptr;
}
