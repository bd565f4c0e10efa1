#pragma once

#include <string>
#include <string_view>

/// Where things lie for this user, by the XDG Base Directory Specification: a variable that is unset, empty
/// or relative has its default. Nothing is created, but by MakePrivateFolder(). No path ends in "/".
namespace platform::StandardFolders {

/// $HOME, else the user's home by the password file, else "/".
std::string Home();

/// $XDG_DATA_HOME, default ~/.local/share. Also the user domain of the launch information.
std::string DataHome();
/// $XDG_CONFIG_HOME, default ~/.config.
std::string ConfigHome();
/// $XDG_CACHE_HOME, default ~/.cache.
std::string CacheHome();
/// $XDG_STATE_HOME, default ~/.local/state.
std::string StateHome();

/// The local domain, for all users of the machine: /usr/local/share below the system root.
std::string LocalDomain();
inline std::string UserDomain() {
  return DataHome();
}

/// The folder for sockets and locks of the session's programs of one application:
/// $XDG_RUNTIME_DIR/application, or, when the variable is unset or a socket there would have too long a path,
/// a short folder in /tmp keyed by the user and the variable's value. The same for all programs of one
/// session.
///
/// \param longestName  The length of the longest file name to come.
std::string RuntimeFolder(std::string_view application, size_t longestName);

/// Makes the folder (and those above it) for this user alone.
///
/// \return 0; EPERM when it is there but is a link, somebody else's or open to others; or the error number.
int MakePrivateFolder(const std::string& path);

}  // namespace platform::StandardFolders
