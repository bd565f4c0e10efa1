#include "System/SystemRoot.h"

#include <cstdlib>

namespace platform {

std::string SystemRoot() {
  const char* value = std::getenv("PLATFORM_SYSTEM_ROOT");
  std::string root = value == nullptr ? "" : value;
  while (root.ends_with('/')) root.pop_back();
  return root;
}

std::string InSystemRoot(std::string_view path) {
  return SystemRoot().append(path);
}

}  // namespace platform
