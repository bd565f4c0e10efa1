#include "Activation/State/HornbeamGlobals.h"

#include <array>
#include <string_view>

#include "Utilities/DebugUtils.h"
#include "XCFUtils.h"

std::atomic<bool> HornbeamGlobals::MenusPreparedForFontManager{false};
std::atomic<bool> HornbeamGlobals::StartupLoginChecked{false};
std::atomic<bool> HornbeamGlobals::StartupWorkgroupsChecked{false};
std::atomic<bool> HornbeamGlobals::StartupSchemaVersionsChecked{false};
std::atomic<bool> HornbeamGlobals::FontRefreshPending{false};

std::atomic<bool> HornbeamGlobals::sPluginServicesEnabled{false};
std::atomic<bool> HornbeamGlobals::sConnectedToCore{false};
std::atomic<bool> HornbeamGlobals::sLoggedIn{false};
std::atomic<bool> HornbeamGlobals::sUserHasWorkgroups{false};
std::atomic<bool> HornbeamGlobals::sBulkReplicationRunning{false};
std::atomic<bool> HornbeamGlobals::sIncrementalReplicationRunning{false};
std::atomic<bool> HornbeamGlobals::sDisplayedSchemaError{false};

RetainPtr<CFStringRef> HornbeamGlobals::sHostApp;
RetainPtr<CFStringRef> HornbeamGlobals::sHostAppVersionPrefix;
RetainPtr<CFStringRef> HornbeamGlobals::sHostAppMinimumVersion;
RetainPtr<CFStringRef> HornbeamGlobals::sPluginVersion;
RetainPtr<CFStringRef> HornbeamGlobals::sTalworthPluginInterfaceVersion;
RetainPtr<CFStringRef> HornbeamGlobals::sPluginBundleIdentifier;
std::unique_ptr<std::string> HornbeamGlobals::pPluginBinaryPath;

namespace {

struct HostOfBundle {
  std::string_view bundleID;
  const char* hostApp;
};

constexpr std::array<HostOfBundle, 12> kHostsOfBundles = {{
    {"com.talworth.AutoActivationPlugin.AI19", "IllustratorCC2015"},
    {"com.talworth.AutoActivationPlugin.AI20", "IllustratorCC2016"},
    {"com.talworth.AutoActivationPlugin.AI21", "IllustratorCC2017"},
    {"com.talworth.AutoActivationPlugin.AI22", "IllustratorCC2018"},
    {"com.talworth.AutoActivationPlugin.AI23", "IllustratorCC2019"},
    {"com.talworth.AutoActivationPlugin.AI24", "IllustratorCC2020"},
    {"com.talworth.AutoActivationPlugin.AE137", "AfterEffectsCC2015"},
    {"com.talworth.AutoActivationPlugin.AE138", "AfterEffectsCC2016"},
    {"com.talworth.AutoActivationPlugin.AE140", "AfterEffectsCC2017"},
    {"com.talworth.AutoActivationPlugin.AE150", "AfterEffectsCC2018"},
    {"com.talworth.AutoActivationPlugin.AE160", "AfterEffectsCC2019"},
    {"com.talworth.AutoActivationPlugin.AE170", "AfterEffectsCC2020"},
}};

constexpr int kHostTypePhotoshop = 2;
constexpr int kHostTypeIllustrator = 3;
constexpr int kHostTypeInDesign = 4;
constexpr int kHostTypeInCopy = 5;
constexpr int kHostTypeAfterEffects = 7;

}  // namespace

bool HornbeamGlobals::ArePluginServicesEnabled() {
  return sPluginServicesEnabled && sLoggedIn && sUserHasWorkgroups;
}

void HornbeamGlobals::SetPluginServicesEnabled(bool enable) {
  OutputIndentedAndFormattedString(0, "Calling HornbeamGlobals::SetPluginServicesEnabled( enable=%d )",
                                   enable);
  sPluginServicesEnabled = enable;
}

void HornbeamGlobals::SetConnectedToCore(bool connected) {
  OutputIndentedAndFormattedString(0, "Calling HornbeamGlobals::SetConnectedToCore(connected=%d)", connected);
  sConnectedToCore = connected;
}

void HornbeamGlobals::SetLoggedIn(bool loggedIn) {
  OutputIndentedAndFormattedString(0, "Calling HornbeamGlobals::SetLoggedIn(loggedIn=%d)", loggedIn);
  sLoggedIn = loggedIn;
}

void HornbeamGlobals::SetUserHasWorkgroups(bool hasWorkgroups) {
  sUserHasWorkgroups = hasWorkgroups;
}

void HornbeamGlobals::SetBulkReplicationRunning(bool isReplicating) {
  OutputIndentedAndFormattedString(0, "Calling HornbeamGlobals::SetBulkReplicationRunning(isReplicating=%d)",
                                   isReplicating);
  sBulkReplicationRunning = isReplicating;
}

void HornbeamGlobals::SetIncrementalReplicationRunning(bool isReplicating) {
  OutputIndentedAndFormattedString(
      0, "Calling HornbeamGlobals::SetIncrementalReplicationRunning(isReplicating=%d)", isReplicating);
  sIncrementalReplicationRunning = isReplicating;
}

void HornbeamGlobals::SetDisplayedSchemaError(bool displayed) {
  sDisplayedSchemaError = displayed;
}

void HornbeamGlobals::IdentifyPluginHostApp(CFStringRef hostApp) {
  if (hostApp) {
    sHostApp = retainCF(hostApp);
  } else if (sPluginBundleIdentifier) {
    sHostApp = XCFUtils::CreateString(MapBundleIDtoHostApp(sPluginBundleIdentifier.get()));
  } else {
    sHostApp = nullptr;
  }
}

void HornbeamGlobals::IdentifyPluginHostAppVersionPrefix(CFStringRef prefix) {
  sHostAppVersionPrefix = retainCF(prefix);
}

void HornbeamGlobals::IdentifyPluginHostAppMinimumVersion(CFStringRef version) {
  sHostAppMinimumVersion = retainCF(version);
}

void HornbeamGlobals::IdentifyPluginVersion(CFStringRef version) {
  sPluginVersion = retainCF(version);
}

void HornbeamGlobals::IdentifyPluginBundleID(CFStringRef bundleID) {
  sPluginBundleIdentifier = retainCF(bundleID);
}

void HornbeamGlobals::IdentifyPluginInterfaceVersion(CFStringRef version) {
  sTalworthPluginInterfaceVersion = retainCF(version);
}

void HornbeamGlobals::IdentifyPluginBinaryPath(const std::string& path) {
  if (!pPluginBinaryPath) pPluginBinaryPath = std::make_unique<std::string>();
  *pPluginBinaryPath = path;
}

std::string HornbeamGlobals::GetPluginHostApp() {
  return XCFUtils::GetStdString(sHostApp.get());
}

std::string HornbeamGlobals::GetPluginHostAppVersionPrefix() {
  return XCFUtils::GetStdString(sHostAppVersionPrefix.get());
}

std::string HornbeamGlobals::GetPluginHostAppMinimumVersion() {
  return XCFUtils::GetStdString(sHostAppMinimumVersion.get());
}

std::string HornbeamGlobals::GetPluginVersion() {
  return XCFUtils::GetStdString(sPluginVersion.get());
}

std::string HornbeamGlobals::GetPluginBinaryPath() {
  return pPluginBinaryPath ? *pPluginBinaryPath : "";
}

std::string HornbeamGlobals::MapBundleIDtoHostApp(CFStringRef bundleID) {
  const std::string id = XCFUtils::GetStdString(bundleID);
  for (const HostOfBundle& row : kHostsOfBundles) {
    if (row.bundleID == id) return row.hostApp;
  }
  OutputIndentedAndFormattedString(0, "Unknown bundleID in %s(%s)", __func__, id.c_str());
  return "";
}

int HornbeamGlobals::GetHostTypeFromHostAppID() {
  return GetHostTypeFromHostAppID(GetPluginHostApp());
}

int HornbeamGlobals::GetHostTypeFromHostAppID(const std::string& hostApp) {
  if (hostApp.starts_with("InDesign")) return kHostTypeInDesign;
  if (hostApp.starts_with("InCopy")) return kHostTypeInCopy;
  if (hostApp.starts_with("Illustrator")) return kHostTypeIllustrator;
  if (hostApp.starts_with("Photoshop")) return kHostTypePhotoshop;
  if (hostApp.starts_with("After")) return kHostTypeAfterEffects;
  return 0;
}

bool HornbeamGlobals::HostAppIsInCopy() {
  return GetHostTypeFromHostAppID() == kHostTypeInCopy;
}
bool HornbeamGlobals::HostAppIsInDesign() {
  return GetHostTypeFromHostAppID() == kHostTypeInDesign;
}
bool HornbeamGlobals::HostAppIsPhotoshop() {
  return GetHostTypeFromHostAppID() == kHostTypePhotoshop;
}
bool HornbeamGlobals::HostAppIsIllustrator() {
  return GetHostTypeFromHostAppID() == kHostTypeIllustrator;
}

bool HornbeamGlobals::HostAppIsAfterEffects() {
  const std::string hostApp = GetPluginHostApp();
  return hostApp.find("AECC") != std::string::npos || hostApp.starts_with("After");
}

bool HornbeamGlobals::HostAppIsSketch() {
  const std::string hostApp = GetPluginHostApp();
  return hostApp.find("Sketch") != std::string::npos || hostApp.find("sketch") != std::string::npos;
}

std::string HornbeamGlobals::GetHostAppCategory() {
  if (HostAppIsInCopy() || HostAppIsInDesign()) return "id";
  if (HostAppIsPhotoshop()) return "ps";
  if (HostAppIsIllustrator()) return "ai";
  if (HostAppIsAfterEffects()) return "ae";
  if (HostAppIsSketch()) return "sk";
  return "";
}

void HornbeamGlobals::RefreshActiveFontList(void (*callback)(void* context), void* context) {
  if (!callback) return;
  callback(context);
  callback(context);
}
