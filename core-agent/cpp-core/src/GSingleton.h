#pragma once

#include <atomic>

#include "GBlockingLockStrategy.h"
#include "GMutex.h"
#include "GScopedLock.h"

/// One instance of T, made on first use and kept to the end of the process, so that code that runs while
/// statics are torn down can still use it.
template <typename T>
class GSingleton {
 public:
  GSingleton(const GSingleton&) = delete;
  GSingleton& operator=(const GSingleton&) = delete;

  /// \return null only when T's own constructor asks for the instance. Thread: any.
  static T* GetSharedInstance() {
    static std::atomic<T*> sInstance = nullptr;
    static GMutex& sMutex = *new GMutex;
    if (T* instance = sInstance.load(std::memory_order_acquire)) return instance;
    const GScopedLock lock(sMutex, true, new GBlockingLockStrategy);
    if (!lock.IsLocked()) return nullptr;
    if (sInstance.load(std::memory_order_relaxed) == nullptr) {
      sInstance.store(new T, std::memory_order_release);
    }
    return sInstance.load(std::memory_order_relaxed);
  }

 protected:
  GSingleton() = default;
  ~GSingleton() = default;
};
