#pragma once

#include "CPMUnknown.h"
#include "GMutex.h"
#include "IStartupShutdownService.h"

/// The host's start-up service of this plug-in: brings it up, and takes it down at quit.
///
/// No failure reaches the host: the plug-in then stays loaded and inert.
///
/// Thread: whichever the host chooses; the three operations never overlap.
class AppStartupShutdownResponder : public CPMUnknown<IStartupShutdownService> {
 public:
  using CPMUnknown::CPMUnknown;

  /// Starts what all hosts share, writes the default preferences at the first start ever, installs the idle
  /// task of the session, if there is one, and starts the delivery of the agent's events. Message boxes are
  /// shown on the main thread only.
  void Startup() override;

  /// Gives back the fonts and frees what is shared. When it comes in the middle of another call of the
  /// host's, from a message box, it is done at the end of that call.
  void Shutdown() override;

  /// Frees what is kept for documents, after the last one has closed. Tracker and font manager stay.
  ///
  /// \param bDeleteActivationList  Non-zero also empties the activation list.
  static void ReleaseGlobalMemory(short bDeleteActivationList);

 private:
  static void ShutDownNow();

  /// Taken before the mutex of CommonFunctionality.
  static GMutex msMutex;
};
