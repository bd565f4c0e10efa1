#pragma once

#include <string>

/// What start-up and shutdown of the plug-in are in any host. Free of the host's SDK.
///
/// Life: a StaticPluginInitializer at load records who the plug-in is; Startup() and
/// InitializeCommonPreferences() run from the host's start-up service; Shutdown() runs at its quit. No
/// failure stops the host: the flags of HornbeamGlobals say that the plug-in may not work.
namespace CommonFunctionality {

/// Records the plug-in's identity in HornbeamGlobals. The plug-in has one static instance.
class StaticPluginInitializer {
 public:
  /// \param pluginIdentity  The plug-in's bundle ID when it begins with "com.talworth.", otherwise the path
  ///        of its binary.
  /// \param requiredHostVersionPrefix  What the host's version must begin with; empty for no such demand.
  StaticPluginInitializer(const std::string& pluginIdentity, const std::string& requiredHostVersionPrefix);
};

/// Brings the plug-in up: checks the host's version, creates the font manager, starts the log, checks login
/// and workgroups. Only the first call of the process does the work.
///
/// \param allowDialogs  False keeps message boxes away, for a thread that may not show any. The box about a
///        missing login is shown all the same.
/// \return 0 when services may run, else -1; -1 on every further call, with nothing changed.
/// Thread: any; held off by a Shutdown() under way.
int Startup(bool allowDialogs);

/// Writes the default preferences, unless the user has preferences already.
///
/// \return 1 when they were written, else 0.
int InitializeCommonPreferences();

/// Gives back all fonts as the preferences say, deletes the font manager and the shared objects, stops the
/// log. Only the first call of the process does the work.
///
/// \return 0.
int Shutdown();

/// For tests, which start and stop the plug-in more than once in one process.
void ResetCallCountersForTesting();

}  // namespace CommonFunctionality
