#pragma once

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <functional>
#include <map>
#include <mutex>
#include <string>
#include <thread>
#include <variant>
#include <vector>

#include "GTypes.h"
#include "client/PluginInterface.h"

/// One event of the agent for the receivers, in plain values: what a receiver gets is made of them when it is
/// called.
struct Notification {
  struct LogIn {
    bool isLoggedIn = false;
    int serverType = 0;
  };
  struct Progress {
    std::string text;  // for the user
    uint32_t step = 0;
    uint32_t stepCount = 0;
  };
  int kind = 0;                                                              // NotificationKind
  std::variant<std::monostate, unsigned int, bool, LogIn, Progress> data{};  // unsigned int is a font ID
  std::string file{};  // of a font that is or was visible to all programs, else empty
  uint64_t order = 0;  // of the message that said it (Connection::Incoming)
};

/// Hands the agent's events to the registered receivers, one after another, on the library's own thread.
///
/// The thread begins with Start() and ends with Stop(). Before receivers hear of a batch of events the thread
/// calls `prepare` with it, so that what an event tells is true for the process when a receiver acts on it.
///
/// Thread: any, but Stop() only outside the library's own.
class NotificationCenter {
 public:
  /// Sees the events that are about to be delivered, in order. May block; must not throw.
  using Prepare = std::function<void(const std::vector<Notification>&)>;
  /// Called again and again while nothing happens. \return When it wants to be called next; 0 is not at all.
  using Idle = std::function<std::chrono::seconds()>;

  /// More events of fonts than this don't wait for a receiver that hangs; the newest are dropped. The others
  /// change what a program may do, and have some room more.
  static constexpr size_t kMaxWaiting = 1'000'000;
  static constexpr size_t kMoreRoom = 10'000;

  NotificationCenter(Prepare prepare, Idle idle);
  ~NotificationCenter();
  NotificationCenter(const NotificationCenter&) = delete;
  NotificationCenter& operator=(const NotificationCenter&) = delete;

  /// \return 0; CoreErrorCodes::kItemAlreadyExists.
  TErrCode Register(NotifyProc receiver);
  /// Waits until the receiver has returned, unless it is the one that calls.
  /// \return 0; CoreErrorCodes::kNotFound.
  TErrCode Unregister(NotifyProc receiver);

  /// Begins the thread if it doesn't run.
  void Start();
  /// Drops what waits, waits for a running receiver and ends the thread. Receivers stay registered.
  void Stop();

  /// Appends events; never blocks. A progress takes the place of one of its kind that still waits, unless its
  /// run has been stopped since.
  void Post(std::vector<Notification>&& notifications);

  /// Whether the calling thread is inside a receiver.
  static bool IsInReceiver();

 private:
  void Run();
  void Append(Notification&& notification);
  void ForgetWaiting();
  void Deliver(const Notification& notification);

  const Prepare mPrepare;
  const Idle mIdle;
  std::mutex mThreadMutex;  // Start() and Stop(), against each other
  std::thread mThread;
  std::mutex mMutex;
  std::condition_variable mChanged;
  bool mStop = false;
  std::vector<NotifyProc> mReceivers;
  NotifyProc mRunning = nullptr;
  std::vector<Notification> mWaiting;
  std::map<int, size_t> mProgressAt;  // the kinds that run, with the place of their progress in mWaiting
};
