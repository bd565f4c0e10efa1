#pragma once

#include <CoreFoundation/CoreFoundation.h>

#include <string>
#include <vector>

#include "Memory/RetainPtr.h"

class PlugIn;

namespace headless {

/// Loads plug-ins from bundles, and keeps the bundles for as long as it lives, so that a plug-in finds its
/// own by its identifier. Code that was loaded stays loaded.
class PlugInLoader {
 public:
  /// Loads every "*.InDesignPlugin" of a folder, in the order of their names.
  ///
  /// \param folder  An absolute path; "" for "Plug-Ins" beside the Info.plist of the running program's
  /// bundle. \param errors  Receives a sentence for each that can't be loaded. \return The plug-ins' objects,
  /// which belong to their code.
  std::vector<PlugIn*> Load(const std::string& folder, std::vector<std::string>& errors);

 private:
  std::vector<RetainPtr<CFBundleRef>> m_vBundles;
};

}  // namespace headless
