#include "CoreFoundation/CFBundleRegistry.h"

#include <algorithm>
#include <filesystem>

#include "CoreFoundation/CFDictionary.h"

namespace cf {

namespace {

/// The folder of the running program's bundle.
std::string MainFolder() {
  std::error_code error;
  const std::filesystem::path folder = std::filesystem::read_symlink("/proc/self/exe", error).parent_path();
  if (folder.filename() == "Contents") return folder.parent_path().string();
  if (folder.filename() == "Linux" && folder.parent_path().filename() == "Contents") {
    return folder.parent_path().parent_path().string();
  }
  return folder.string();
}

}  // namespace

BundleRegistry& BundleRegistry::Get() {
  // Never freed: bundles may be released by the last static object.
  static auto* const registry = new BundleRegistry;
  return *registry;
}

BundleRegistry::BundleRegistry() {
  const UncountedScope uncounted;
  main_ = new __CFBundle(MainFolder(), true);
  main_->MakeConstant();
  bundles_.push_back(main_);
}

__CFBundle* BundleRegistry::Create(const std::string& folder) {
  std::error_code error;
  const std::string real = std::filesystem::canonical(folder, error).string();
  if (error || !std::filesystem::is_directory(real, error)) return nullptr;
  const std::lock_guard lock(mutex_);
  for (__CFBundle* bundle : bundles_) {
    if (bundle->path == real && bundle->RetainIfLive()) return bundle;
  }
  return bundles_.emplace_back(new __CFBundle(real, false));
}

__CFBundle* BundleRegistry::Find(CFStringRef identifier) {
  const std::lock_guard lock(mutex_);
  const auto found = std::find_if(bundles_.begin(), bundles_.end(), [identifier](const __CFBundle* bundle) {
    return bundle->Count() > 0 &&
           CFEqual(CFDictionaryGetValue(bundle->info.get(), kCFBundleIdentifierKey), identifier);
  });
  return found == bundles_.end() ? nullptr : *found;
}

std::vector<__CFBundle*> BundleRegistry::All() {
  const std::lock_guard lock(mutex_);
  return bundles_;
}

void BundleRegistry::Remove(const __CFBundle* bundle) {
  const std::lock_guard lock(mutex_);
  std::erase(bundles_, bundle);
}

}  // namespace cf
