#include "kiln/fonts/FontFileNames.h"

#include <filesystem>
#include <set>
#include <system_error>

#include "kiln/fonts/Vault.h"

namespace kiln {

bool IsNamedAsFont(const std::string& fileName) {
  static const std::set<std::string> kExtensions{"otf", "ttf", "ttc", "otc", "pfb", "pfa", "t1"};
  return kExtensions.count(Vault::ExtensionOf(fileName)) > 0;
}

bool IsMetricsOfFont(const std::string& path) {
  const std::string extension = Vault::ExtensionOf(path.substr(path.rfind('/') + 1));
  if (extension != "afm" && extension != "pfm") return false;
  std::error_code ignored;
  for (const char* font : {".pfb", ".pfa", ".t1", ".PFB", ".PFA"}) {
    if (std::filesystem::exists(std::filesystem::path(path).replace_extension(font), ignored)) return true;
  }
  return false;
}

}  // namespace kiln
