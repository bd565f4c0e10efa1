#include "kiln/fonts/Vault.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cctype>
#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <system_error>

#include "protocol/ErrorCodes.h"

namespace kiln {
namespace {

constexpr const char* kMetricsSuffix = ".afm";

uint32_t CodeOf(int error) {
  return error == ENOSPC || error == EDQUOT ? codes::kDiskFull : codes::kFileSystemError;
}

}  // namespace

uint32_t Vault::Prepare() {
  if (MakeFolders(mPaths.incoming) != 0) return codes::kInvalidVault;
  if (access(mPaths.vault.c_str(), R_OK | W_OK | X_OK) != 0) return codes::kInvalidVault;
  if (access(mPaths.incoming.c_str(), R_OK | W_OK | X_OK) != 0) return codes::kInvalidVault;
  std::error_code error;
  for (std::filesystem::directory_iterator entry(mPaths.incoming, error), end; !error && entry != end;
       entry.increment(error)) {
    std::error_code ignored;
    std::filesystem::remove(entry->path(), ignored);
  }
  return codes::kSuccess;
}

std::string Vault::NewIncomingPath() {
  return mPaths.incoming + "/" + std::to_string(mNextIncoming++);
}

uint32_t Vault::TakeIn(const std::string& incoming, bool metrics, const std::string& hash,
                       const std::string& extension, uint64_t size) {
  const std::string path = PathOf(mPaths, hash, extension);
  if (const int error = MakeFolders(path.substr(0, path.rfind('/')))) return CodeOf(error);
  if (StateOf(path, size) == FileState::kSound) {
    Discard(incoming);
    return codes::kSuccess;
  }
  if (metrics) std::rename((incoming + kMetricsSuffix).c_str(), (path + kMetricsSuffix).c_str());
  return std::rename(incoming.c_str(), path.c_str()) == 0 ? codes::kSuccess : CodeOf(errno);
}

FileState Vault::StateOf(const std::string& path, uint64_t size) {
  struct stat found {};
  if (stat(path.c_str(), &found) != 0) return FileState::kMissing;
  const bool sound = S_ISREG(found.st_mode) && static_cast<uint64_t>(found.st_size) == size &&
                     access(path.c_str(), R_OK) == 0;
  return sound ? FileState::kSound : FileState::kUnusable;
}

void Vault::Remove(const std::string& path) {
  unlink(path.c_str());
  unlink((path + kMetricsSuffix).c_str());
}

void Vault::Discard(const std::string& incoming) {
  Remove(incoming);
}

std::string Vault::PathOf(const KilnPaths& paths, const std::string& hash, const std::string& extension) {
  return paths.vault + "/" + hash.substr(0, 2) + "/" + hash + "." + extension;
}

std::string Vault::ExtensionOf(const std::string& fileName) {
  constexpr size_t kLongest = 8;
  const size_t dot = fileName.rfind('.');
  std::string extension = dot == std::string::npos ? "" : fileName.substr(dot + 1);
  for (char& c : extension) {
    if (!std::isalnum(static_cast<unsigned char>(c))) return "font";
    c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  }
  return extension.empty() || extension.size() > kLongest ? "font" : extension;
}

}  // namespace kiln
