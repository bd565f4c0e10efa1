#pragma once

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <functional>
#include <mutex>
#include <string>
#include <thread>
#include <variant>
#include <vector>

#include "GTypes.h"
#include "client/PluginInterface.h"

/// One event of the agent for the receivers.
struct Notification {
  int kind = 0;                                     // NotificationKind
  std::variant<std::monostate, unsigned int> data;  // nothing, or a font ID
  std::string file;    // of a font that is or was visible to all programs, else empty
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

  /// More events than this don't wait for a receiver that hangs; the newest are dropped.
  static constexpr size_t kMaxWaiting = 1'000'000;

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

  /// Appends events; never blocks.
  void Post(std::vector<Notification>&& notifications);

  /// Whether the calling thread is inside a receiver.
  static bool IsInReceiver();

 private:
  void Run();
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
};
