#include "kiln/system/KilnPaths.h"

#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>

namespace kiln {
namespace {

std::string Home() {
  if (const char* home = std::getenv("HOME"); home && *home == '/') return home;
  const passwd* entry = getpwuid(getuid());
  return entry && entry->pw_dir && *entry->pw_dir == '/' ? entry->pw_dir : "/";
}

// The XDG rule: a relative path is as good as none.
std::string BaseFolder(const char* variable, const char* belowHome) {
  if (const char* value = std::getenv(variable); value && *value == '/') return value;
  return Home() + belowHome;
}

}  // namespace

KilnPaths KilnPaths::FromEnvironment() {
  const std::string dataHome = BaseFolder("XDG_DATA_HOME", "/.local/share");
  KilnPaths paths;
  paths.data = dataHome + "/kiln";
  paths.dataLock = paths.data + "/Kiln.lock";
  paths.database = paths.data + "/Kiln.sqlite";
  paths.vault = paths.data + "/vault";
  paths.incoming = paths.vault + "/incoming";
  paths.links = dataHome + "/fonts/kiln";
  paths.state = BaseFolder("XDG_STATE_HOME", "/.local/state") + "/kiln";
  paths.log = paths.state + "/Kiln.log";
  return paths;
}

int MakeFolders(const std::string& path) {
  struct stat found {};
  if (stat(path.c_str(), &found) == 0) return S_ISDIR(found.st_mode) ? 0 : ENOTDIR;
  if (const size_t slash = path.rfind('/'); slash != std::string::npos && slash > 0) {
    if (const int error = MakeFolders(path.substr(0, slash))) return error;
  }
  return mkdir(path.c_str(), 0700) == 0 || errno == EEXIST ? 0 : errno;
}

}  // namespace kiln
