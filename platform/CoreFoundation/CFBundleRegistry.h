#pragma once

#include <mutex>
#include <string>
#include <vector>

#include "CoreFoundation/CFBundleObject.h"

namespace cf {

/// The bundles that somebody holds, and the main one. It holds none itself. For the sources of this folder
/// only.
class BundleRegistry {
 public:
  static BundleRegistry& Get();

  /// With a reference that is the caller's; null when there is no such folder.
  __CFBundle* Create(const std::string& folder);
  __CFBundle* Main() const { return main_; }
  __CFBundle* Find(CFStringRef identifier);
  /// In the order in which they were made.
  std::vector<__CFBundle*> All();
  void Remove(const __CFBundle* bundle);

 private:
  BundleRegistry();

  std::mutex mutex_;
  std::vector<__CFBundle*> bundles_;
  __CFBundle* main_;
};

}  // namespace cf
