#include "GFileSystem.h"

#include <CoreFoundation/CoreFoundation.h>
#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <cstdlib>
#include <deque>
#include <filesystem>
#include <vector>

#include "GErrors.h"
#include "GStringUtils.h"
#include "Memory/RetainPtr.h"
#include "System/StandardFolders.h"

namespace {

constexpr int kMaxLinkResolutions = 40;

std::string HomeOfUser(const std::string& name) {
  std::vector<char> buffer(16384);
  passwd entry{};
  passwd* found = nullptr;
  getpwnam_r(name.c_str(), &entry, buffer.data(), buffer.size(), &found);
  return found != nullptr && found->pw_dir != nullptr ? found->pw_dir : "";
}

// "~" and "~/..." are the user's own home, "~name/..." is that of another; an unknown name stays as it is.
std::string WithTildeExpanded(const std::string& path) {
  if (path.empty() || path[0] != '~') return path;
  const std::size_t end = std::min(path.find('/'), path.size());
  const std::string name = path.substr(1, end - 1);
  const std::string home = name.empty() ? platform::StandardFolders::Home() : HomeOfUser(name);
  return home.empty() ? path : home + path.substr(end);
}

bool Exists(const std::string& path) {
  struct stat status {};
  return lstat(path.c_str(), &status) == 0;
}

RetainPtr<CFStringRef> Decoded(const std::string& path, CFStringEncoding encoding) {
  return adoptCF(CFStringCreateWithBytes(nullptr, reinterpret_cast<const UInt8*>(path.data()),
                                         static_cast<CFIndex>(path.size()), encoding, false));
}

// Each byte of Latin-1 is the code point of its number.
std::string Utf8FromLatin1(const std::string& path) {
  std::string utf8;
  for (const char character : path) {
    const auto byte = static_cast<unsigned char>(character);
    if (byte < 0x80) {
      utf8 += character;
    } else {
      utf8 += static_cast<char>(0xC0 | byte >> 6);
      utf8 += static_cast<char>(0x80 | (byte & 0x3F));
    }
  }
  return utf8;
}

std::string WithEncodingRepaired(const std::string& path) {
  if (Decoded(path, kCFStringEncodingUTF8)) return path;
  if (GLogger* logger = GLogger::GetSharedInstance()) {
    logger->LogWarning(
        "FileSystem",
        "GFileSystem::OSExpandPath(), called with invalid UTF8 Path. Attempting convserion with "
        "other encodings.");
  }
  return Exists(path) ? path : Utf8FromLatin1(path);
}

void PushComponents(std::deque<std::string>& components, const std::string& path) {
  const std::vector<std::string> tokens = GStringUtils::OSTokenizeString(path, "/");
  components.insert(components.begin(), tokens.begin(), tokens.end());
}

// Empty for a path that is no link.
std::string LinkDestination(const std::string& path) {
  char destination[PATH_MAX];
  const ssize_t length = readlink(path.c_str(), destination, sizeof destination);
  return length > 0 ? std::string(destination, static_cast<std::size_t>(length)) : std::string();
}

std::string ParentOf(const std::string& path) {
  const std::size_t slash = path.rfind('/');
  return slash == path.npos ? std::string() : path.substr(0, slash);
}

// Walks the components from the left; `resolved` never holds a link. An absolute `resolved` begins with "/"
// and is empty for the root.
std::string WithLinksResolved(const std::string& path) {
  bool isAbsolute = !GFileSystem::OSIsPartialPath(path);
  std::string resolved;
  std::deque<std::string> components;
  PushComponents(components, path);
  for (int links = 0; !components.empty();) {
    const std::string component = components.front();
    components.pop_front();
    if (component == ".") continue;
    if (component == ".." && (isAbsolute || (!resolved.empty() && !resolved.ends_with("..")))) {
      resolved = ParentOf(resolved);
      continue;
    }
    std::string candidate = resolved;
    if (isAbsolute || !resolved.empty()) candidate += '/';
    candidate += component;
    const std::string destination = LinkDestination(candidate);
    if (destination.empty()) {
      resolved = candidate;
      continue;
    }
    if (++links > kMaxLinkResolutions) return "";
    if (destination[0] == '/') {
      isAbsolute = true;
      resolved.clear();
    }
    PushComponents(components, destination);
  }
  if (!resolved.empty()) return resolved;
  return isAbsolute ? "/" : ".";
}

}  // namespace

const std::string& GFileSystem::OSGetPathSeparator() {
  static const auto& sSeparator = *new std::string("/");
  return sSeparator;
}

bool GFileSystem::OSIsPartialPath(const std::string& path) {
  return path.empty() || path[0] != '/';
}

bool GFileSystem::OSIsValidFullPath(const std::string& path) {
  return !OSIsPartialPath(path) && path.size() < PATH_MAX && path.find('\0') == path.npos;
}

bool GFileSystem::OSDoesFileExist(const GFileSystemSpec& spec) {
  struct stat status {};
  return !spec.IsEmpty() && stat(spec.GetFullPath().c_str(), &status) == 0;
}

std::string GFileSystem::OSGetCWD() {
  std::error_code error;
  return std::filesystem::current_path(error).string();
}

TErrCode GFileSystem::OSGetUsersHomeDirectory(GFileSystemSpec& outSpec) {
  return outSpec.SetFullPath(platform::StandardFolders::Home());
}

std::string GFileSystem::OSExpandPath(const std::string& path) {
  if (path.empty() || path.size() >= PATH_MAX) return "";
  try {
    return WithLinksResolved(WithTildeExpanded(WithEncodingRepaired(path)));
  } catch (const std::exception& exception) {
    if (GLogger* logger = GLogger::GetSharedInstance()) {
      logger->LogError("FileSystem", "GFileSystem::OSExpandPath(), exception caught\n- %s", exception.what());
    }
    return "";
  }
}

TErrCode GFileSystem::FindDirectory(EDomain domain, EDirectory, bool create, GFileSystemSpec& outSpec) {
  const std::string path = domain == eLocalDomain ? platform::StandardFolders::LocalDomain()
                                                  : platform::StandardFolders::UserDomain();
  if (create) {
    std::error_code error;
    std::filesystem::create_directories(path, error);
    const TErrCode status = GFAIL_IF(error, TErrCode{kDirectoryNotFound}, "FileSystem", GLogger::eError);
    if (status != CoreErrorCodes::kSuccess) return status;
  }
  return GCHECK(outSpec.SetFullPath(path), "FileSystem", GLogger::eError);
}
