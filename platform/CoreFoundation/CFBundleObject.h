#pragma once

#include <CoreFoundation/CFBundle.h>

#include <map>
#include <mutex>
#include <optional>
#include <string>

#include "CoreFoundation/CFRuntime.h"
#include "CoreFoundation/CFStringsFile.h"
#include "Memory/RetainPtr.h"

struct __CFBundle final : cf::Object {
  static constexpr cf::TypeNumber kType = cf::kBundleType;

  __CFBundle(std::string folder, bool isMain);
  ~__CFBundle() override;

  std::string Describe(int) const override { return "CFBundle " + path; }

  /// "" when there is none.
  std::string ExecutablePath() const;
  std::string ResourcesFolder() const { return contents + "/Resources"; }
  std::string LocalizedFolder() const;

  /// The text for the key; nothing when the table hasn't one.
  std::optional<std::u16string> LocalizedText(const std::string& table, const std::u16string& key);

  bool Load(std::string* problem);
  bool IsLoaded();
  void Unload();
  void* Symbol(const std::string& name);

  /// The real path of the folder.
  const std::string path;
  const bool main;
  /// The folder that `Resources/` and `Frameworks/` lie in.
  std::string contents;
  RetainPtr<CFDictionaryRef> info;

 private:
  std::mutex mutex_;
  void* handle_ = nullptr;
  std::map<std::string, cf::StringsTable> tables_;
};
