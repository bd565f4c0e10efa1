#pragma once

#include "IPMUnknown.h"

/// Is called when the host has come up, after every plug-in was registered, and again before it goes. A boss
/// with this interface needs no service provider.
class IStartupShutdownService : public IPMUnknown {
 public:
  static constexpr PMIID kDefaultIID = IID_ISTARTUPSHUTDOWNSERVICE;

  /// Thread: whichever the host chooses; ask IDThreading.
  virtual void Startup() = 0;
  virtual void Shutdown() = 0;
};
