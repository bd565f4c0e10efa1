#pragma once

#include <string>

/// The subcommands of `hornbeam library` about where Kiln takes fonts from, as LibraryCommands.h tells. The
/// fonts may still be on their way when a command is over; `hornbeam status` tells.

struct LoginOptions {
  std::string folder;
  std::string user;  ///< empty for the name of Kiln's own user
};
int RunLogin(const LoginOptions& options);

struct LogoutOptions {
  bool leave = false;  ///< and stand alone from now on
};
int RunLogout(const LogoutOptions& options);

struct GoogleOnOptions {
  std::string folder;  ///< empty for the one of the last time
};
int RunGoogleOn(const GoogleOnOptions& options);

struct GoogleOffOptions {};
int RunGoogleOff(const GoogleOffOptions& options);

struct RescanOptions {};
/// Looks whether the library's files are there, and reads Google's and the server's folders anew.
int RunRescan(const RescanOptions& options);
