#include "System/StandardFolders.h"

#include <pwd.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <vector>

#include "System/SystemRoot.h"

namespace platform::StandardFolders {

namespace {

std::string WithoutEndSlashes(std::string path) {
  while (path.size() > 1 && path.ends_with('/')) path.pop_back();
  return path;
}

/// The variable's path, or "" when it counts as not set.
std::string FromEnvironment(const char* name) {
  const char* value = std::getenv(name);
  if (value == nullptr || value[0] != '/') return {};
  return WithoutEndSlashes(value);
}

std::string FromEnvironmentOrHome(const char* name, const char* below) {
  std::string folder = FromEnvironment(name);
  if (!folder.empty()) return folder;
  const std::string home = Home();
  return (home == "/" ? "" : home) + below;
}

/// FNV-1a: the same in every program, unlike std::hash.
std::uint64_t HashOf(std::string_view text) {
  std::uint64_t hash = 14695981039346656037U;
  for (const char character : text) hash = (hash ^ static_cast<unsigned char>(character)) * 1099511628211U;
  return hash;
}

}  // namespace

std::string Home() {
  std::string home = FromEnvironment("HOME");
  if (!home.empty()) return home;
  std::vector<char> buffer(16384);
  passwd entry{};
  passwd* found = nullptr;
  if (getpwuid_r(getuid(), &entry, buffer.data(), buffer.size(), &found) != 0 || found == nullptr) return "/";
  return found->pw_dir != nullptr && found->pw_dir[0] == '/' ? WithoutEndSlashes(found->pw_dir) : "/";
}

std::string DataHome() {
  return FromEnvironmentOrHome("XDG_DATA_HOME", "/.local/share");
}

std::string ConfigHome() {
  return FromEnvironmentOrHome("XDG_CONFIG_HOME", "/.config");
}

std::string CacheHome() {
  return FromEnvironmentOrHome("XDG_CACHE_HOME", "/.cache");
}

std::string StateHome() {
  return FromEnvironmentOrHome("XDG_STATE_HOME", "/.local/state");
}

std::string LocalDomain() {
  return InSystemRoot("/usr/local/share");
}

std::string RuntimeFolder(std::string_view application, size_t longestName) {
  const std::string runtime = FromEnvironment("XDG_RUNTIME_DIR");
  std::string folder = runtime + "/" + std::string(application);
  // A zero stands at the end of a socket's path.
  if (!runtime.empty() && folder.size() + 1 + longestName < sizeof(sockaddr_un::sun_path)) return folder;
  char key[64];
  std::snprintf(key, sizeof key, "-%u-%016jx", static_cast<unsigned>(getuid()),
                static_cast<std::uintmax_t>(HashOf(runtime)));
  return "/tmp/" + std::string(application) + key;
}

int MakePrivateFolder(const std::string& path) {
  std::error_code error;
  const std::filesystem::path parent = std::filesystem::path(path).parent_path();
  if (!parent.empty()) std::filesystem::create_directories(parent, error);
  if (mkdir(path.c_str(), S_IRWXU) != 0 && errno != EEXIST) return errno;
  struct stat status {};
  if (lstat(path.c_str(), &status) != 0) return errno;
  const bool isPrivate =
      S_ISDIR(status.st_mode) && status.st_uid == geteuid() && (status.st_mode & (S_IRWXG | S_IRWXO)) == 0;
  return isPrivate ? 0 : EPERM;
}

}  // namespace platform::StandardFolders
