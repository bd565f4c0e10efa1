#pragma once

#include <CoreFoundation/CoreFoundation.h>

#include <memory>

#include "GErrorCodes.h"
#include "Memory/RetainPtr.h"
#include "client/LibraryInterface.h"

/// Names an entry of the agent's client library for KilnConnection::Call().
#define KILN_ENTRY(name)                  \
  KilnConnection::Entry<decltype(name)> { \
#name                                 \
  }

/// The agent's client library, found and loaded at run time beside Kiln, the way a plug-in finds it.
///
/// Life: Open() finds Kiln, if need be starts it, and loads the library; the end of the object takes the
/// connection back. The library's code stays loaded.
///
/// Thread: main.
class KilnConnection {
 public:
  /// Whether a Kiln that doesn't run may be started.
  enum class Launch { kNever, kIfNeeded };

  template <typename Function>
  struct Entry {
    const char* name;
  };

  /// \return Null when Kiln isn't there or its library can't be loaded; standard error says which.
  static std::unique_ptr<KilnConnection> Open(Launch launch = Launch::kIfNeeded);

  /// Whether a Kiln of this session runs.
  static bool IsKilnRunning();

  ~KilnConnection();
  KilnConnection(const KilnConnection&) = delete;
  KilnConnection& operator=(const KilnConnection&) = delete;

  /// Calls an entry that takes the facade first. kNotInitialized when the library has none of that name.
  template <typename Function, typename... Arguments>
  ErrCode Call(Entry<Function> entry, Arguments... arguments) const {
    const auto function = reinterpret_cast<Function*>(FindEntry(entry.name));
    return function ? function(m_getFacade(), arguments...) : CoreErrorCodes::kNotInitialized;
  }

 private:
  explicit KilnConnection(CFBundleRef bundle);
  void* FindEntry(const char* name) const;

  RetainPtr<CFBundleRef> m_bundle;
  decltype(&::GetPluginFacadeInstance) m_getFacade = nullptr;
};
