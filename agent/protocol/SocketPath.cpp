#include "protocol/SocketPath.h"

#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <cerrno>
#include <cinttypes>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string_view>

namespace kiln {
namespace {

constexpr const char* kSocketName = "/Kiln.socket";
constexpr const char* kLockName = "/Kiln.lock";

bool FitsSocketAddress(const std::string& folder) {
  return folder.size() + std::char_traits<char>::length(kSocketName) < sizeof(sockaddr_un::sun_path);
}

// FNV-1a, 64 bits: the same in every process of the session, which std::hash doesn't promise.
uint64_t Hash(std::string_view text) {
  uint64_t hash = 0xcbf29ce484222325u;
  for (const unsigned char c : text) hash = (hash ^ c) * 0x100000001b3u;
  return hash;
}

}  // namespace

std::string RuntimeFolder() {
  const char* variable = std::getenv("XDG_RUNTIME_DIR");
  const std::string base = variable ? variable : "";
  if (!base.empty() && base.front() == '/' && FitsSocketAddress(base + "/hornbeam"))
    return base + "/hornbeam";
  char name[64];
  std::snprintf(name, sizeof name, "/tmp/hornbeam-%u-%016" PRIx64, unsigned{getuid()}, Hash(base));
  return name;
}

int MakeRuntimeFolder() {
  const std::string folder = RuntimeFolder();
  if (mkdir(folder.c_str(), 0700) != 0 && errno != EEXIST) return errno;
  struct stat found {};
  if (lstat(folder.c_str(), &found) != 0) return errno;
  if (!S_ISDIR(found.st_mode) || found.st_uid != getuid() || (found.st_mode & 0077) != 0) return EACCES;
  return 0;
}

std::string SocketPath() {
  return RuntimeFolder() + kSocketName;
}

std::string LockPath() {
  return RuntimeFolder() + kLockName;
}

}  // namespace kiln
