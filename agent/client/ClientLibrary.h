#pragma once

#include <chrono>
#include <cstdint>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "client/NotificationCenter.h"
#include "client/OwnActivations.h"
#include "client/PluginInterface.h"
#include "client/ProcessFonts.h"
#include "client/Session.h"

/// What the library keeps for its process: the one current session with its facade, the receivers of
/// notifications, and the fonts that the process was made to see.
///
/// Thread: any.
class ClientLibrary {
 public:
  /// Made at first use and never freed, since threads may still be in it when the process ends.
  static ClientLibrary& Get();

  /// \param fontSystem  What the process's fonts are changed by. Owned.
  explicit ClientLibrary(std::unique_ptr<FontSystem> fontSystem);
  ~ClientLibrary() = default;
  ClientLibrary(const ClientLibrary&) = delete;
  ClientLibrary& operator=(const ClientLibrary&) = delete;

  /// The current facade, made when there is none. Facades are numbers that never come again, so that a stale
  /// one is known as such.
  FacadeRef Facade();
  /// The session of a facade; null for any but the current one.
  std::shared_ptr<Session> Find(FacadeRef facade);
  /// Drops the current session.
  void Reset();
  /// Ends everything that runs; fonts leave the process. A later Facade() begins anew.
  void CleanUp();
  /// Ends the threads, leaves the fonts.
  void StopThreads();

  NotificationCenter& Notifications() { return mNotifications; }
  ProcessFonts& Fonts() { return mFonts; }
  OwnActivations& Own() { return mOwn; }

 private:
  void PrepareProcess(const std::vector<Notification>& batch);
  std::chrono::seconds CheckProcess();

  const std::string mClientUUID;
  ProcessFonts mFonts;
  OwnActivations mOwn;
  std::chrono::steady_clock::time_point mLastCheck;  // the notification thread's own
  NotificationCenter mNotifications;
  std::mutex mMutex;
  uintptr_t mLastFacade = 0;
  std::shared_ptr<Session> mSession;
  Connection::Clock::time_point mWaitedInVain;  // by the session before
};
