#pragma once

#include <string>

/// Finds the font manager's core application among the running processes, and starts it.
///
/// Where the core lies isn't built in: the installer leaves a launch information file,
/// `<domain folder>/Talworth/com.talworth.Kiln-LaunchInfo.conf` (GConfigurationFile's syntax), in the local
/// domain or else in the user's. Its `kiln.path` is the full path of the executable, `kiln.args`, if any, the
/// one argument that it is started with.
///
/// Thread: main. FindAndLaunchKiln() runs the run loop while it waits, so that timers and signals of the host
/// are served, and what they call can re-enter the caller.

constexpr const char* kCompanyName = "Talworth";
constexpr const char* kLaunchInfoConfigName = "com.talworth.Kiln-LaunchInfo.conf";
constexpr const char* kKilnPathKeyName = "kiln.path";
constexpr const char* kKilnArgsKeyName = "kiln.args";

/// Starts the core and waits, up to 5 seconds, until it is seen among the running processes. It starts a new
/// process even if one runs already: to look first is the caller's part.
///
/// \param outFolderPath  Receives the executable's folder and a "/" once the process has been started, also
///                       if it isn't seen in time. May be null.
/// \return 0 when the core runs, else -1 with a trace line. Without launch information nothing is started.
int FindAndLaunchKiln(std::string* outFolderPath);

/// Looks for a running process of this session by the file name of its executable, compared exactly.
///
/// \param outFolderPath  Receives the folder of the first match and a "/"; untouched without a match.
/// \return 0 on a match, else -1.
int GetPathToRunningProcessExe(const std::string& name, std::string& outFolderPath);

/// Reads a text of a bundle's information dictionary, as UTF-8 with its NUL.
///
/// \param size  The room at `outValue`, in bytes.
/// \return non-zero on success. 0, with `outValue` empty when there is room for that, when there is no such
///         bundle or text or the text doesn't fit.
int ReadFieldFromVersionResource(const char* bundlePath, const char* key, unsigned long size, char* outValue);

/// The same for the key "CFBundleShortVersionString".
int ReadVersionResource(const char* bundlePath, unsigned long size, char* outValue);
