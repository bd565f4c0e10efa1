#pragma once

#include <string>

#include "GErrorCodes.h"
#include "GFileSystemSpec.h"

/// The file system operations of the platform.
class GFileSystem : public GFileSystemCodes {
 public:
  /// Whose folders: those of all users of this machine, or the user's own.
  enum EDomain { eLocalDomain, eUserDomain };
  /// What is kept there: eLibraryDirectory holds the files that programs keep for themselves.
  enum EDirectory { eLibraryDirectory };

  GFileSystem() = delete;

  static const std::string& OSGetPathSeparator();

  /// True for an empty path and for one that doesn't begin with "/".
  static bool OSIsPartialPath(const std::string& path);

  /// True for an absolute path without NUL bytes, no longer than the system can open.
  static bool OSIsValidFullPath(const std::string& path);

  static bool OSDoesFileExist(const GFileSystemSpec& spec);

  /// The current directory; empty when it has been removed.
  static std::string OSGetCWD();

  /// \return CoreErrorCodes::kInvalidParam, with `outSpec` untouched, for a home that is no valid path.
  static TErrCode OSGetUsersHomeDirectory(GFileSystemSpec& outSpec);

  /// Expands a tilde and resolves the symbolic links along the path, as far as the path exists.
  ///
  /// A path that isn't UTF-8 is kept as it is when it names a file; otherwise it is taken for Latin-1.
  /// \return empty after 40 links, which is a cycle in all likelihood, and for a path that is longer than the
  ///         system can open.
  static std::string OSExpandPath(const std::string& path);

  /// The folder of a domain (System/StandardFolders.h): for the library, "/usr/local/share" below the system
  /// root in the local domain, $XDG_DATA_HOME in the user's.
  ///
  /// \param create  Makes the folder when it is missing; otherwise it need not exist.
  /// \return kDirectoryNotFound when it can't be made, CoreErrorCodes::kInvalidParam when it is no valid
  /// path,
  ///         both with `outSpec` untouched.
  static TErrCode FindDirectory(EDomain domain, EDirectory directory, bool create, GFileSystemSpec& outSpec);
};
