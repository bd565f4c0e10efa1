#include "CoreFoundation/CFBundleObject.h"

#include <dlfcn.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <utility>

#include "CoreFoundation/CFBundleRegistry.h"
#include "CoreFoundation/CFPropertyList.h"
#include "Memory/CFVector.h"

namespace {

std::optional<std::string> ReadFile(const std::string& path) {
  std::error_code error;
  if (!std::filesystem::is_regular_file(path, error)) return std::nullopt;
  std::ifstream in(path, std::ios::binary);
  if (!in) return std::nullopt;
  return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

RetainPtr<CFDictionaryRef> ReadDictionary(const std::string& bytes) {
  const auto list = adoptCF(CFPropertyListCreateWithData(kCFAllocatorDefault, ToCFData(bytes).get(),
                                                         kCFPropertyListImmutable, nullptr, nullptr));
  return retainCF(dynamicCF<CFDictionaryRef>(list.get()));
}

}  // namespace

__CFBundle::__CFBundle(std::string folder, bool isMain)
    : Object(kType), path(std::move(folder)), main(isMain), contents(path) {
  std::error_code error;
  if (std::filesystem::is_directory(path + "/Contents", error)) contents = path + "/Contents";
  for (const char* place : {"/Contents", "/Resources", ""}) {
    const std::optional<std::string> bytes = ReadFile(path + place + "/Info.plist");
    if (!bytes) continue;
    info = ReadDictionary(*bytes);
    break;
  }
  if (!info) info = MakeDictionary();
}

__CFBundle::~__CFBundle() {
  cf::BundleRegistry::Get().Remove(this);
}

std::string __CFBundle::ExecutablePath() const {
  std::string name = ToStdString(CFDictionaryGetValue(info.get(), kCFBundleExecutableKey));
  if (name.empty()) name = std::filesystem::path(path).stem().string();
  if (name.find('/') != std::string::npos) return {};
  for (const char* place : {"/Contents/Linux/", "/Contents/", "/"}) {
    std::error_code error;
    std::string candidate = path + place + name;
    if (std::filesystem::is_regular_file(candidate, error)) return candidate;
  }
  return {};
}

std::string __CFBundle::LocalizedFolder() const {
  const std::string region = ToStdString(CFDictionaryGetValue(info.get(), kCFBundleDevelopmentRegionKey));
  std::error_code error;
  if (!region.empty() && region.find('/') == std::string::npos) {
    std::string folder = ResourcesFolder() + "/" + region + ".lproj";
    if (std::filesystem::is_directory(folder, error)) return folder;
  }
  return ResourcesFolder() + "/en.lproj";
}

std::optional<std::u16string> __CFBundle::LocalizedText(const std::string& table, const std::u16string& key) {
  const std::lock_guard lock(mutex_);
  auto found = tables_.find(table);
  if (found == tables_.end()) {
    const std::optional<std::string> bytes = ReadFile(LocalizedFolder() + "/" + table + ".strings");
    found = tables_.emplace(table, bytes ? cf::ParseStrings(*bytes) : cf::StringsTable()).first;
  }
  const auto text = found->second.find(key);
  if (text == found->second.end()) return std::nullopt;
  return text->second;
}

bool __CFBundle::Load(std::string* problem) {
  const std::string executable = ExecutablePath();
  const std::lock_guard lock(mutex_);
  if (handle_ != nullptr) return true;
  if (executable.empty() && !main) {
    *problem = "The bundle " + path + " has no executable";
    return false;
  }
  // The program itself is open already, and can't be opened by its name.
  handle_ = dlopen(main ? nullptr : executable.c_str(), RTLD_NOW | RTLD_LOCAL);
  if (handle_ != nullptr) return true;
  const char* reason = dlerror();
  *problem = reason == nullptr ? executable : reason;
  return false;
}

bool __CFBundle::IsLoaded() {
  const std::lock_guard lock(mutex_);
  return main || handle_ != nullptr;
}

void __CFBundle::Unload() {
  const std::lock_guard lock(mutex_);
  if (handle_ != nullptr) dlclose(std::exchange(handle_, nullptr));
}

void* __CFBundle::Symbol(const std::string& name) {
  std::string ignored;
  if (name.empty() || !Load(&ignored)) return nullptr;
  const std::lock_guard lock(mutex_);
  return handle_ == nullptr ? nullptr : dlsym(handle_, name.c_str());
}
