#include "Activation/CommonFunctionality.h"

#include <atomic>

#include "Activation/HostVersion.h"
#include "Activation/State/HornbeamGlobals.h"
#include "CoreAgentInterface/Shuttle/AgentLog.h"
#include "FontManagerInterface/FontManagerInterface.h"
#include "GBlockingLockStrategy.h"
#include "GMutex.h"
#include "GProcessInfo.h"
#include "GScopedLock.h"
#include "LoomInterface/LoomInterface.h"
#include "LoomInterface/PreferenceKeys.h"
#include "Utilities/DebugUtils.h"
#include "Utilities/OperationTrace.h"

namespace CommonFunctionality {
namespace {

GMutex sMutex;
int numberOfTimesStartupMethodHasBeenCalled = 0;
int numberOfTimesShutdownMethodHasBeenCalled = 0;
// The host quit while a box of the start-up was up; the start-up works it off at its end.
std::atomic<bool> sShutdownIsDue{false};

struct DefaultFlag {
  CFStringRef key;
  bool value;
};
struct DefaultNumber {
  CFStringRef key;
  int value;
};

bool RunningInCompatibleHostApp() {
  OperationTrace trace("RunningInCompatibleHostApp", "Entering %s()", "RunningInCompatibleHostApp");
  const std::string prefix = HornbeamGlobals::GetPluginHostAppVersionPrefix();
  const std::string minimum = HornbeamGlobals::GetPluginHostAppMinimumVersion();
  std::string hostAppVersion;
  GProcessInfo::OSGetCurrentProcessVersionString(hostAppVersion);
  OutputIndentedAndFormattedString(
      0, "In %s(), versionPrefixRequired='%s', minimumVersionRequired='%s', hostAppVersion='%s'",
      "RunningInCompatibleHostApp", prefix.c_str(), minimum.c_str(), hostAppVersion.c_str());
  const bool compatible = HostVersion::IsCompatible(prefix, minimum, hostAppVersion);
  trace.Exiting("RunningInCompatibleHostApp: returning %d", compatible);
  return compatible;
}

void DisableServices() {
  HornbeamGlobals::SetPluginServicesEnabled(false);
  HornbeamGlobals::SetConnectedToCore(false);
}

bool IsUsable(const LoomInterface* loom) {
  return loom && loom->IsValid();
}

bool FailedToLoad(const LoomInterface& loom) {
  const int error = loom.GetError();
  return (error >= 2 && error <= 4) || !loom.IsValid();
}

// The framework's part of the start-up: the log, what went wrong before, and the framework itself.
void StartWithLoom(LoomInterface& loom, bool hostIsCompatible, bool managerIsCompatible, bool allowDialogs) {
  const std::string logFileName = HornbeamGlobals::GetPluginHostApp() + ".log";
  InitLogging(logFileName.c_str());
  if (loom.GetEnabledLoggingPref()) StartLogging();

  if (allowDialogs && !hostIsCompatible) {
    loom.ShowUnsupportedHostAppMessageBox();
  } else if (allowDialogs && !managerIsCompatible) {
    loom.ShowHornbeamOldVersionMessageBox();
  }
  if (FailedToLoad(loom)) {
    if (allowDialogs) loom.ShowLoomNotFoundMessageBox();
    DisableServices();
  }
}

void CheckLogin(FontManagerInterface* manager, LoomInterface* loom) {
  if (!HornbeamGlobals::ArePluginServicesEnabled() || !manager || !IsUsable(loom)) return;
  if (manager->IsLoggedIn()) {
    OutputIndentedAndFormattedString(0, "login check at startup:  Logged in");
    return;
  }
  OutputIndentedAndFormattedString(0, "login check at startup:  NOT logged in...");
  OutputIndentedAndFormattedString(0, "Disabling plugin functionality");
  HornbeamGlobals::SetLoggedIn(false);
  if (!HornbeamGlobals::HostAppIsAfterEffects()) loom->ShowNotLoggedInMessageBox(false);
}

void CheckWorkgroups(FontManagerInterface* manager, LoomInterface* loom, bool allowDialogs) {
  if (!HornbeamGlobals::ArePluginServicesEnabled() || !IsUsable(loom) ||
      !loom->GetEnabledAutoActivationPref() || !manager || !manager->IsLoggedIn() ||
      manager->RunningStandalone()) {
    return;
  }
  OutputIndentedAndFormattedString(0, "checking for workgroups at startup");
  if (manager->CheckForWorkgroups()) {
    HornbeamGlobals::SetUserHasWorkgroups(true);
    return;
  }
  OutputIndentedAndFormattedString(0, "Disabling plugin functionality");
  HornbeamGlobals::SetUserHasWorkgroups(false);
  if (allowDialogs) loom->ShowNoWorkgroupsMessageBox();
}

int StartUpOnce(bool allowDialogs) {
  HornbeamGlobals::SetLoggedIn(true);
  HornbeamGlobals::SetPluginServicesEnabled(true);
  HornbeamGlobals::SetConnectedToCore(true);
  HornbeamGlobals::SetUserHasWorkgroups(true);

  const bool hostIsCompatible = RunningInCompatibleHostApp();
  const bool managerIsCompatible = FontManagerInterface::CompatibleFontManagerIsRunning(nullptr);
  const bool compatible = hostIsCompatible && managerIsCompatible;
  if (!compatible) DisableServices();

  LoomInterface* loom = HornbeamGlobals::GetSharedLoomInterface();
  if (loom) {
    StartWithLoom(*loom, hostIsCompatible, managerIsCompatible, allowDialogs);
  } else {
    DisableServices();
  }

  FontManagerInterface* manager = FontManagerInterface::GetFontManager();
  CheckLogin(manager, loom);
  CheckWorkgroups(manager, loom, allowDialogs);
  FontManagerInterface::CheckSelectWorkgroup();
  return compatible ? 0 : -1;
}

}  // namespace

int Startup(bool allowDialogs) {
  OperationTrace trace("CommonFunctionality::Startup", "Entering %s(allowDialogs=%d)",
                       "CommonFunctionality::Startup", allowDialogs);
  int result = -1;
  {
    const GScopedLock lock(sMutex, true, new GBlockingLockStrategy);
    // A box that the first call shows can run the host's events and bring the same thread here again.
    if (!lock.IsLocked()) return result;
    if (++numberOfTimesStartupMethodHasBeenCalled > 1) {
      trace.Exiting("Early return from %s() because it has been called %d times",
                    "CommonFunctionality::Startup", numberOfTimesStartupMethodHasBeenCalled);
      return result;
    }
    result = StartUpOnce(allowDialogs);
  }
  if (sShutdownIsDue.exchange(false)) Shutdown();
  trace.Exiting("%s() returning %d", "CommonFunctionality::Startup", result);
  return result;
}

int InitializeCommonPreferences() {
  OperationTrace trace("CommonFunctionality::InitializeCommonPreferences", "Entering %s()",
                       "CommonFunctionality::InitializeCommonPreferences");
  const DefaultFlag flags[] = {
      {kEnablePluginPrefKey, true},           {kEnableGlyphMarkPrefKey, true},
      {kDialogSuppressionPrefKey, true},      {kPickBestMatchPrefKey, true},
      {kSupportEmbeddedObjectsPrefKey, true}, {kCloseFontsOnHostAppQuitPrefKey, true},
      {kCloseFontsOnDocClosePrefKey, false},  {kActivateEntireFamiliesPrefKey, false},
  };
  const DefaultNumber sizes[] = {{kCS5PanelWidthPrefKey, 260}, {kCS5PanelHeightPrefKey, 350}};

  int written = 0;
  LoomInterface* loom = HornbeamGlobals::GetSharedLoomInterface();
  if (loom && !loom->DoPreferencesExist()) {
    for (const DefaultFlag& flag : flags) loom->SetPreferenceForKey(flag.key, flag.value);
    for (const DefaultNumber& size : sizes) loom->SetLongPreferenceForKey(size.key, size.value);
    loom->SetPreferenceForKey(kDropDownSelectionPrefKey, false);
    written = 1;
  }
  trace.Exiting("%s() returning %d", "CommonFunctionality::InitializeCommonPreferences", written);
  return written;
}

int Shutdown() {
  const OperationTrace trace("CommonFunctionality::Shutdown", "Entering %s()",
                             "CommonFunctionality::Shutdown");
  const GScopedLock lock(sMutex, true, new GBlockingLockStrategy);
  if (!lock.IsLocked()) {
    sShutdownIsDue = true;
    return 0;
  }
  if (++numberOfTimesShutdownMethodHasBeenCalled == 1) {
    FontManagerInterface::OnHostAppShuttingDown();
    HornbeamGlobals::CleanUpOnShutdown();
    StopLogging();
  }
  sShutdownIsDue = false;
  return 0;
}

void ResetCallCountersForTesting() {
  const GScopedLock lock(sMutex, true, new GBlockingLockStrategy);
  numberOfTimesStartupMethodHasBeenCalled = 0;
  numberOfTimesShutdownMethodHasBeenCalled = 0;
}

}  // namespace CommonFunctionality
