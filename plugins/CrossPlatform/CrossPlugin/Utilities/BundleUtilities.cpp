#include "Utilities/BundleUtilities.h"

#include "Memory/CFVector.h"
#include "Utilities/DebugUtils.h"

namespace {

std::string QuotableText(CFStringRef text) {
  return text != nullptr ? ToStdString(text) : "(null)";
}

}  // namespace

RetainPtr<CFBundleRef> OpenBundleAtPath(const std::string& path) {
  const RetainPtr<CFURLRef> url = ToCFURL(path, true);
  RetainPtr<CFBundleRef> bundle;
  if (url) bundle = adoptCF(CFBundleCreate(kCFAllocatorDefault, url.get()));
  if (!bundle) OutputIndentedAndFormattedString(0, "CFBundleCreate failed on '%s'.", path.c_str());
  return bundle;
}

RetainPtr<CFBundleRef> LoadPrivateFramework(CFStringRef bundleIdentifier, const char* frameworkName) {
  const CFBundleRef plugin =
      bundleIdentifier != nullptr ? CFBundleGetBundleWithIdentifier(bundleIdentifier) : nullptr;
  if (plugin == nullptr) {
    OutputIndentedAndFormattedString(0, "CFBundleGetBundleWithIdentifier failed on '%s'.",
                                     QuotableText(bundleIdentifier).c_str());
    return nullptr;
  }
  const RetainPtr<CFURLRef> frameworks = adoptCF(CFBundleCopyPrivateFrameworksURL(plugin));
  const std::string folder = frameworks ? ToPath(frameworks.get()) : "";
  if (folder.empty()) {
    OutputIndentedAndFormattedString(0, "CFBundleCopyPrivateFrameworksURL failed on '%s'.",
                                     QuotableText(bundleIdentifier).c_str());
    return nullptr;
  }
  return OpenBundleAtPath(folder + "/" + frameworkName);
}

CFBundleRef GetBundleWithIdentifierReliably(CFStringRef bundleIdentifier) {
  if (bundleIdentifier == nullptr) return nullptr;
  if (const CFBundleRef bundle = CFBundleGetBundleWithIdentifier(bundleIdentifier)) return bundle;
  OutputIndentedAndFormattedString(0, "CFBundleGetBundleWithIdentifier could not get a CFBundleRef for '%s'",
                                   QuotableText(bundleIdentifier).c_str());
  for (const RetainPtr<CFBundleRef>& bundle : ToVector<CFBundleRef>(CFBundleGetAllBundles())) {
    const CFStringRef identifier = CFBundleGetIdentifier(bundle.get());
    OutputIndentedAndFormattedString(0, "Examining bundle ID:  %s", QuotableText(identifier).c_str());
    if (identifier != nullptr && CFEqual(identifier, bundleIdentifier)) return bundle.get();
  }
  return nullptr;
}
