#include "headless/PlugInLoader.h"

#include "Memory/CFVector.h"
#include "PlugIn.h"

namespace headless {
namespace {

constexpr char kPlugInType[] = "InDesignPlugin";
constexpr char kPlugInFolder[] = "/Contents/Plug-Ins";

std::string MainPlugInFolder() {
  const auto bundle = adoptCF(CFBundleCopyBundleURL(CFBundleGetMainBundle()));
  return ToPath(bundle.get()) + kPlugInFolder;
}

std::string LoadExecutable(CFBundleRef bundle) {
  CFErrorRef failure = nullptr;
  if (CFBundleLoadExecutableAndReturnError(bundle, &failure)) return {};
  const auto error = adoptCF(failure);
  if (!error) return "its code can't be loaded";
  const auto text = adoptCF(CFErrorCopyDescription(error.get()));
  return ToStdString(text.get());
}

}  // namespace

std::vector<PlugIn*> PlugInLoader::Load(const std::string& folder, std::vector<std::string>& errors) {
  std::vector<PlugIn*> plugIns;
  const auto url = ToCFURL(folder.empty() ? MainPlugInFolder() : folder, true);
  const auto type = ToCFString(kPlugInType);
  const auto entry = ToCFString(kGetPlugInEntry);
  const auto bundles =
      adoptCF(CFBundleCreateBundlesFromDirectory(kCFAllocatorDefault, url.get(), type.get()));
  if (!bundles) return plugIns;
  for (const RetainPtr<CFBundleRef>& bundle : ToVector<CFBundleRef>(bundles.get())) {
    const auto bundleURL = adoptCF(CFBundleCopyBundleURL(bundle.get()));
    const std::string named = ToPath(bundleURL.get()) + ": ";
    // Held before its code runs: its static initialisers look it up.
    m_vBundles.push_back(bundle);
    if (const std::string failure = LoadExecutable(bundle.get()); !failure.empty()) {
      errors.push_back(named + failure);
      continue;
    }
    const auto getPlugIn =
        reinterpret_cast<GetPlugInProc>(CFBundleGetFunctionPointerForName(bundle.get(), entry.get()));
    PlugIn* plugIn = getPlugIn ? getPlugIn() : nullptr;
    if (plugIn) {
      plugIns.push_back(plugIn);
    } else {
      errors.push_back(named + "is no plug-in, as it has no entry");
    }
  }
  return plugIns;
}

}  // namespace headless
