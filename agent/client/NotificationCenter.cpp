#include "client/NotificationCenter.h"

#include <algorithm>
#include <utility>

#include "GErrorCodes.h"

namespace {

thread_local bool tInReceiver = false;

// The library's own part; out of memory there costs a late view of fonts, not the thread.
template <typename Function>
auto Guarded(const Function& function) -> decltype(function()) {
  try {
    return function();
  } catch (...) {
    return decltype(function())();
  }
}

}  // namespace

NotificationCenter::NotificationCenter(Prepare prepare, Idle idle)
    : mPrepare(std::move(prepare)), mIdle(std::move(idle)) {}

NotificationCenter::~NotificationCenter() {
  Stop();
}

bool NotificationCenter::IsInReceiver() {
  return tInReceiver;
}

TErrCode NotificationCenter::Register(NotifyProc receiver) {
  std::scoped_lock lock(mMutex);
  if (std::ranges::find(mReceivers, receiver) != mReceivers.end()) return CoreErrorCodes::kItemAlreadyExists;
  mReceivers.push_back(receiver);
  return CoreErrorCodes::kSuccess;
}

TErrCode NotificationCenter::Unregister(NotifyProc receiver) {
  std::unique_lock lock(mMutex);
  if (std::erase(mReceivers, receiver) == 0) return CoreErrorCodes::kNotFound;
  if (!tInReceiver) mChanged.wait(lock, [&] { return mRunning != receiver; });
  return CoreErrorCodes::kSuccess;
}

void NotificationCenter::Start() {
  std::scoped_lock starting(mThreadMutex);
  if (mThread.joinable()) return;
  {
    std::scoped_lock lock(mMutex);
    mStop = false;
    mWaiting.clear();  // what a dying connection still had to say
  }
  mThread = std::thread([this] { Run(); });
}

void NotificationCenter::Stop() {
  std::scoped_lock stopping(mThreadMutex);
  if (!mThread.joinable()) return;
  {
    std::scoped_lock lock(mMutex);
    mStop = true;
    mWaiting.clear();
    mChanged.notify_all();
  }
  mThread.join();
}

void NotificationCenter::Post(std::vector<Notification>&& notifications) {
  std::scoped_lock lock(mMutex);
  for (Notification& notification : notifications) {
    if (mWaiting.size() == kMaxWaiting) break;
    mWaiting.push_back(std::move(notification));
  }
  mChanged.notify_all();
}

void NotificationCenter::Run() {
  std::unique_lock lock(mMutex);
  while (!mStop) {
    if (mWaiting.empty()) {
      lock.unlock();
      const std::chrono::seconds pause = Guarded(mIdle);
      lock.lock();
      const auto wanted = [&] { return mStop || !mWaiting.empty(); };
      if (pause.count() > 0) {
        mChanged.wait_for(lock, pause, wanted);
      } else {
        mChanged.wait(lock, wanted);
      }
      continue;
    }
    const std::vector<Notification> batch = std::exchange(mWaiting, {});
    lock.unlock();
    Guarded([&] { mPrepare(batch); });
    for (const Notification& notification : batch) Deliver(notification);
    lock.lock();
  }
}

void NotificationCenter::Deliver(const Notification& notification) {
  std::unique_lock lock(mMutex);
  // By value: a receiver may unregister itself or, from another thread, somebody else meanwhile.
  const std::vector<NotifyProc> receivers = mReceivers;
  for (const NotifyProc receiver : receivers) {
    if (mStop) return;
    if (std::ranges::find(mReceivers, receiver) == mReceivers.end()) continue;
    mRunning = receiver;
    lock.unlock();
    tInReceiver = true;
    try {
      unsigned int fontID = 0;
      void* data = nullptr;
      if (const auto* id = std::get_if<unsigned int>(&notification.data)) {
        fontID = *id;
        data = &fontID;
      }
      receiver(notification.kind, data);
    } catch (...) {  // a receiver's fault is not the next one's
    }
    tInReceiver = false;
    lock.lock();
    mRunning = nullptr;
    mChanged.notify_all();
  }
}
