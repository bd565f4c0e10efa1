#pragma once

#include <string>

/// Where Kiln and its clients of one user session meet.
///
/// The folder is `$XDG_RUNTIME_DIR/hornbeam`. Where that variable is unset or its path too long for a
/// socket's address, it is `/tmp/hornbeam-<uid>-<hash of the variable's value>`, so that each session still
/// has its own.
namespace kiln {

/// The folder, whether it exists or not.
std::string RuntimeFolder();

/// Makes the folder, for this user alone.
/// \return 0; or an errno: EACCES for a folder that is someone else's, a symbolic link, or open to others.
int MakeRuntimeFolder();

/// The socket in the folder. Always short enough for sockaddr_un.
std::string SocketPath();

/// The file that a running Kiln holds locked (flock) in the folder.
std::string LockPath();

}  // namespace kiln
