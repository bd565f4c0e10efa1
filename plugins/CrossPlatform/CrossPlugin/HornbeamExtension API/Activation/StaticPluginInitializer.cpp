#include <string_view>

#include "Activation/CommonFunctionality.h"
#include "Activation/State/HornbeamGlobals.h"
#include "CoreAgentInterface/Shuttle/ShuttleLoader.h"
#include "Memory/CFVector.h"
#include "Utilities/AgentLauncher.h"
#include "Utilities/BundleUtilities.h"

namespace {

constexpr std::string_view kBundleIDPrefix = "com.talworth.";
constexpr unsigned long kVersionBufferSize = 1024;
constexpr unsigned long kHostAppBufferSize = 128;

struct PluginIdentity {
  RetainPtr<CFStringRef> bundleID;
  RetainPtr<CFStringRef> pluginVersion;
  RetainPtr<CFStringRef> hostApp;
  RetainPtr<CFStringRef> hostAppMinimumVersion;
  std::string binaryPath;
};

CFBundleRef GetPluginBundle(CFStringRef bundleID) {
  static CFBundleRef bundle = nullptr;
  if (!bundle) bundle = GetBundleWithIdentifierReliably(bundleID);
  return bundle;
}

RetainPtr<CFStringRef> GetInfoText(CFBundleRef bundle, CFStringRef key) {
  return retainCF(dynamicCF<CFStringRef>(CFBundleGetValueForInfoDictionaryKey(bundle, key)));
}

PluginIdentity ReadFromBundle(const std::string& bundleID) {
  PluginIdentity identity;
  identity.bundleID = ToCFString(bundleID);
  CFBundleRef bundle = GetPluginBundle(identity.bundleID.get());
  if (!bundle) {
    identity.pluginVersion = retainCF(CFSTR("x.x.x.x"));
    return identity;
  }
  identity.pluginVersion = GetInfoText(bundle, CFSTR("CFBundleShortVersionString"));
  identity.hostApp = GetInfoText(bundle, CFSTR("HostApp"));
  identity.hostAppMinimumVersion = GetInfoText(bundle, CFSTR("HostAppMinimumVersion"));
  identity.binaryPath = ToPath(adoptCF(CFBundleCopyExecutableURL(bundle)).get());
  return identity;
}

RetainPtr<CFStringRef> CreateVersionFromResource(const std::string& path) {
  char buffer[kVersionBufferSize] = {};
  if (ReadVersionResource(path.c_str(), sizeof(buffer), buffer) == 0) return nullptr;
  return ToCFString(buffer);
}

RetainPtr<CFStringRef> CreateHostAppMinimumVersionFromResource(const std::string& path) {
  char buffer[kVersionBufferSize] = {};
  if (ReadFieldFromVersionResource(path.c_str(), "HostAppMinimumVersion", sizeof(buffer), buffer) == 0) {
    return nullptr;
  }
  return ToCFString(buffer);
}

RetainPtr<CFStringRef> CreateHostAppFromResource(const std::string& path) {
  char buffer[kHostAppBufferSize] = {};
  if (ReadFieldFromVersionResource(path.c_str(), "HostApp", sizeof(buffer), buffer) == 0) return nullptr;
  return ToCFString(buffer);
}

PluginIdentity ReadFromFile(const std::string& path) {
  PluginIdentity identity;
  identity.pluginVersion = CreateVersionFromResource(path);
  identity.hostAppMinimumVersion = CreateHostAppMinimumVersionFromResource(path);
  identity.hostApp = CreateHostAppFromResource(path);
  identity.binaryPath = path;
  return identity;
}

}  // namespace

CommonFunctionality::StaticPluginInitializer::StaticPluginInitializer(
    const std::string& pluginIdentity, const std::string& requiredHostVersionPrefix) {
  const PluginIdentity identity = pluginIdentity.starts_with(kBundleIDPrefix) ? ReadFromBundle(pluginIdentity)
                                                                              : ReadFromFile(pluginIdentity);
  // The bundle ID goes first: the client library is looked for in that bundle too.
  HornbeamGlobals::IdentifyPluginBundleID(identity.bundleID.get());
  HornbeamGlobals::IdentifyPluginInterfaceVersion(
      adoptCF(ShuttleLoader::GetSharedInstance()->VersionStringRef()).get());
  HornbeamGlobals::IdentifyPluginHostApp(identity.hostApp.get());
  HornbeamGlobals::IdentifyPluginHostAppVersionPrefix(ToCFString(requiredHostVersionPrefix).get());
  HornbeamGlobals::IdentifyPluginHostAppMinimumVersion(identity.hostAppMinimumVersion.get());
  HornbeamGlobals::IdentifyPluginVersion(identity.pluginVersion.get());
  HornbeamGlobals::IdentifyPluginBinaryPath(identity.binaryPath);
}
