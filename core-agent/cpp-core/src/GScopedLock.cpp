#include "GScopedLock.h"

#include "GBlockingLockStrategy.h"
#include "GErrors.h"

namespace {

// The log takes scoped locks itself. Were one of those to fail, its report would come back here without end,
// so a report inside a report is dropped.
TErrCode ReportLockFailure(TErrCode code, const char* expression, int line) {
  static thread_local bool sIsReporting = false;
  if (code == CoreErrorCodes::kSuccess || sIsReporting) return code;
  sIsReporting = true;
  GErrors::Report(code, "Lockable", GLogger::eDebug, expression, __FILE__, line);
  sIsReporting = false;
  return code;
}

}  // namespace

#define CHECK_LOCKABLE(expression) ReportLockFailure((expression), #expression, __LINE__)

GScopedLock::GScopedLock(GLockable& lockable, bool lockNow, GLockStrategy* strategy)
    : mLockable(lockable), mLockStrategy(strategy) {
  if (mLockStrategy == nullptr) mLockStrategy = std::make_unique<GBlockingLockStrategy>();
  if (lockNow) Lock();
}

GScopedLock::~GScopedLock() {
  if (IsLocked()) Unlock();
}

bool GScopedLock::Lock() {
  if (!mIsLocked) mIsLocked = CHECK_LOCKABLE(mLockStrategy->Lock(mLockable)) == CoreErrorCodes::kSuccess;
  return IsLocked();
}

void GScopedLock::Unlock() {
  if (mIsLocked) mIsLocked = CHECK_LOCKABLE(mLockStrategy->Unlock(mLockable)) != CoreErrorCodes::kSuccess;
}
