#include "client/NotificationCenter.h"

#include <CoreFoundation/CoreFoundation.h>

#include <algorithm>
#include <limits>
#include <utility>

#include "GErrorCodes.h"
#include "Memory/CFVector.h"
#include "Memory/RetainPtr.h"
#include "client/RecordKeys.h"

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

void PutNumber(const RetainPtr<CFMutableDictionaryRef>& dictionary, CFStringRef key, int64_t number) {
  const auto most = int64_t{std::numeric_limits<int32_t>::max()};
  const auto value = static_cast<int32_t>(std::min(number, most));
  CFDictionarySetValue(dictionary.get(), key,
                       adoptCF(CFNumberCreate(nullptr, kCFNumberSInt32Type, &value)).get());
}

// The data of a notification as its receivers get it, for as long as this lives.
class ReceiverData {
 public:
  explicit ReceiverData(const Notification& notification) {
    std::visit([this](const auto& data) { Take(data); }, notification.data);
  }
  void* Pointer() const { return mPointer; }

 private:
  void Take(std::monostate) {}
  void Take(unsigned int fontID) {
    mFontID = fontID;
    mPointer = &mFontID;
  }
  void Take(bool flag) {
    mFlag = flag;
    mPointer = &mFlag;
  }
  void Take(const Notification::LogIn& logIn) {
    mDictionary = MakeDictionary();
    CFDictionarySetValue(mDictionary.get(), RecordKeys::kIsLoggedIn,
                         logIn.isLoggedIn ? kCFBooleanTrue : kCFBooleanFalse);
    PutNumber(mDictionary, RecordKeys::kServerType, logIn.serverType);
    mPointer = mDictionary.get();
  }
  void Take(const Notification::Progress& progress) {
    mDictionary = MakeDictionary();
    const auto text = ToCFString(progress.text);
    CFDictionarySetValue(mDictionary.get(), RecordKeys::kText, text != nullptr ? text.get() : CFSTR(""));
    PutNumber(mDictionary, RecordKeys::kStepIndex, progress.step);
    PutNumber(mDictionary, RecordKeys::kNumSteps, progress.stepCount);
    mPointer = mDictionary.get();
  }

  unsigned int mFontID = 0;
  bool mFlag = false;
  RetainPtr<CFMutableDictionaryRef> mDictionary;
  void* mPointer = nullptr;
};

bool IsOfFont(const Notification& notification) {
  return std::holds_alternative<unsigned int>(notification.data);
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
    ForgetWaiting();  // what a dying connection still had to say
  }
  mThread = std::thread([this] { Run(); });
}

void NotificationCenter::Stop() {
  std::scoped_lock stopping(mThreadMutex);
  if (!mThread.joinable()) return;
  {
    std::scoped_lock lock(mMutex);
    mStop = true;
    ForgetWaiting();
    mChanged.notify_all();
  }
  mThread.join();
}

void NotificationCenter::Post(std::vector<Notification>&& notifications) {
  std::scoped_lock lock(mMutex);
  for (Notification& notification : notifications) Append(std::move(notification));
  mChanged.notify_all();
}

// With mMutex held, as the next.
void NotificationCenter::Append(Notification&& notification) {
  const bool isProgress = std::holds_alternative<Notification::Progress>(notification.data);
  if (const auto last = mProgressAt.find(notification.kind); isProgress && last != mProgressAt.end()) {
    mWaiting[last->second] = std::move(notification);
    return;
  }
  const size_t room = IsOfFont(notification) ? kMaxWaiting : kMaxWaiting + kMoreRoom;
  if (mWaiting.size() >= room) return;
  if (isProgress) {
    mProgressAt[notification.kind] = mWaiting.size();
  } else {
    mProgressAt.erase(notification.kind - 1);  // the kind of a stop follows its progress's
  }
  mWaiting.push_back(std::move(notification));
}

void NotificationCenter::ForgetWaiting() {
  mWaiting.clear();
  mProgressAt.clear();
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
    mProgressAt.clear();
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
      const ReceiverData data(notification);
      receiver(notification.kind, data.Pointer());
    } catch (...) {  // a receiver's fault is not the next one's
    }
    tInReceiver = false;
    lock.lock();
    mRunning = nullptr;
    mChanged.notify_all();
  }
}
