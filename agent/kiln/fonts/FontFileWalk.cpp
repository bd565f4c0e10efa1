#include "kiln/fonts/FontFileWalk.h"

#include <algorithm>
#include <filesystem>
#include <set>
#include <system_error>

#include "kiln/fonts/Vault.h"

namespace kiln {
namespace {

namespace fs = std::filesystem;

constexpr int kDeepest = 64;

bool IsMetricsOfFont(const fs::path& path) {
  const std::string extension = Vault::ExtensionOf(path.filename().string());
  if (extension != "afm" && extension != "pfm") return false;
  std::error_code ignored;
  for (const char* font : {".pfb", ".pfa", ".t1", ".PFB", ".PFA"}) {
    if (fs::exists(fs::path(path).replace_extension(font), ignored)) return true;
  }
  return false;
}

void Walk(const fs::path& folder, std::vector<std::string>& files) {
  std::vector<std::string> found;
  std::error_code error;
  fs::recursive_directory_iterator entry(folder, fs::directory_options::skip_permission_denied, error);
  for (const fs::recursive_directory_iterator end; !error && entry != end; entry.increment(error)) {
    std::error_code ignored;
    if (entry.depth() >= kDeepest) entry.disable_recursion_pending();
    const bool regular = entry->symlink_status(ignored).type() == fs::file_type::regular;
    if (regular && IsNamedAsFont(entry->path().filename().string())) found.push_back(entry->path().string());
  }
  std::sort(found.begin(), found.end());
  files.insert(files.end(), found.begin(), found.end());
}

}  // namespace

bool IsNamedAsFont(const std::string& fileName) {
  static const std::set<std::string> kExtensions{"otf", "ttf", "ttc", "otc", "pfb", "pfa", "t1"};
  return kExtensions.count(Vault::ExtensionOf(fileName)) > 0;
}

std::vector<std::string> FontFilesOf(const std::vector<std::string>& paths) {
  std::vector<std::string> files;
  for (const std::string& path : paths) {
    std::error_code ignored;
    if (fs::is_directory(path, ignored)) {
      Walk(path, files);
    } else if (!IsMetricsOfFont(path)) {
      files.push_back(path);
    }
  }
  return files;
}

}  // namespace kiln
