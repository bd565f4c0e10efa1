// The life of the connection: how it starts, what the user sees when it can't, and what happens when a call
// finds the agent gone.

#include <array>
#include <chrono>
#include <ctime>

#include "Activation/State/HornbeamGlobals.h"
#include "CoreAgentInterface/CoreAgentInterface.h"
#include "CoreAgentInterface/CoreAgentPluginNotification.h"
#include "CoreAgentInterface/CoreAgentPluginNotificationQueue.h"
#include "CoreAgentInterface/Shuttle/ShuttleLoader.h"
#include "GErrorCodes.h"
#include "LoomInterface/LoomInterface.h"
#include "Panel/PanelManager.h"
#include "System/Clock.h"
#include "Utilities/AgentLauncher.h"
#include "Utilities/DebugUtils.h"
#include "Utilities/OperationTrace.h"
#include "Utilities/ScopedFlag.h"
#include "XCFUtils.h"

namespace {

constexpr time_t kSecondsBetweenHealthChecks = 5;
constexpr int kHealthCheckTries = 3;
constexpr int kLaunched = 0;
constexpr int kCouldNotLaunch = 2;

// How many calls are bringing the agent back just now. Not the manager's: a message box of theirs may let the
// host quit and the manager go.
int sCallsInRetry = 0;

// The notification timer ticks in every message box below ProcessNotifications(); its calls find this set.
bool sProcessingNotifications = false;

void DisableServices() {
  HornbeamGlobals::SetPluginServicesEnabled(false);
  HornbeamGlobals::SetConnectedToCore(false);
}

bool IsAgentGone(unsigned int status) {
  return status == GAgentIF::kShutdown || status == GIPCClient::kServiceUnavailable;
}

RetainPtr<CFStringRef> FontVaultPath() {
  std::array<char, 1024> path{};
  ShuttleLoader::GetSharedInstance()->GetFontVaultPath(path.size(), path.data());
  path.back() = '\0';
  return XCFUtils::CreateString(path.data());
}

}  // namespace

void CoreAgentInterface::InitializeCoreAgent(const std::string& hostAppID) {
  const OperationTrace trace("CoreAgentInterface::InitializeCoreAgent",
                             "Entering CoreAgentInterface::InitializeCoreAgent('%s')", hostAppID.c_str());
  const ShuttleLoader* shuttle = ShuttleLoader::GetSharedInstance();
  LoomInterface* loom = HornbeamGlobals::GetSharedLoomInterface();

  if (shuttle->InitAppInstance(HornbeamGlobals::GetHostTypeFromHostAppID(hostAppID), 0) != 0) {
    if (!AreSchemaVersionsInSync() && loom != nullptr) {
      HornbeamGlobals::SetDisplayedSchemaError(true);
      DisableServices();
      loom->ShowVaultNeedsUpgradeMessage();
    }
    return;
  }

  int isRunning = 0;
  const unsigned int rc = shuttle->GetIsCoreAgentProcessRunning(&isRunning);
  if (loom == nullptr || rc != 0 || isRunning == 0) {
    OutputIndentedAndFormattedString(
        0, "Core Agent process not running; rc=%d, isRunning=%d, sizeof(isRunning)=%d", static_cast<int>(rc),
        isRunning, static_cast<int>(sizeof(isRunning)));
    if (loom != nullptr) loom->ShowFontManagerNotFoundMessageBox();
    DisableServices();
    return;
  }

  const unsigned int status = shuttle->InitThreadInstance();
  if (status == 0) {
    OutputIndentedAndFormattedString(0, "GOspreySdk::Initialize SUCCEEDED.");
    HornbeamGlobals::SetPluginServicesEnabled(true);
    HornbeamGlobals::SetConnectedToCore(true);
    HornbeamGlobals::SetLoggedIn(true);
  } else {
    ReportInitializationError(status);
  }
  shuttle->RegisterForNotifications(&CoreAgentNotificationCallback);
  shuttle->EnableDesignActivation();
}

void CoreAgentInterface::ReportInitializationError(unsigned int status) {
  LoomInterface* loom = HornbeamGlobals::GetSharedLoomInterface();
  if (status == GOspreyConfig::kAgentNotFound) {
    OutputIndentedAndFormattedString(0, "Core Agent process not found");
    if (loom != nullptr) loom->ShowFontManagerNotFoundMessageBox();
  } else if (status == GOspreyConfig::kAgentRunningInWrongMode) {
    OutputIndentedAndFormattedString(0, "Core Agent process running in wrong mode");
  } else {
    const RetainPtr<CFStringRef> path = FontVaultPath();
    if (status == GOspreySdk::kVaultInUse) {
      OutputIndentedAndFormattedString(
          0, "GOspreySdk::Initialize FAILED, error code = %d (GOspreySdk::kVaultInUse).",
          static_cast<int>(status));
      if (loom != nullptr) loom->ShowVaultInUseMessage(path.get());
    } else {
      OutputIndentedAndFormattedString(
          0, "GOspreySdk::Initialize FAILED, error code = %d (%s).", static_cast<int>(status),
          status == GOspreySdk::kInvalidVault ? "GOspreySdk::kInvalidVault" : "???");
      if (loom != nullptr) loom->ShowVaultNotAvailableMessage(path.get());
    }
    OutputIndentedAndFormattedString(
        0,
        "Disabling plug-in services in CoreAgentInterface::InitializeCoreAgent() because of SDK "
        "initialization "
        "error %d.",
        static_cast<int>(status));
  }
  DisableServices();
}

int16_t CoreAgentInterface::DisconnectFromFontManager() {
  const OperationTrace trace("CoreAgentInterface::DisconnectFromFontManager",
                             "Entering CoreAgentInterface::DisconnectFromFontManager()");
  ShuttleLoader::GetSharedInstance()->UnregisterForNotifications(&CoreAgentNotificationCallback);
  return 0;
}

// The loop as users meet it: the first relaunch is silent, each further one is announced. It ends on a call
// that reaches the agent, on a relaunch that the user declines, or when the relaunches of this call are used
// up.
unsigned int CoreAgentInterface::CallUnderRetryRule(const AgentCall& call) {
  const bool servicesBefore = HornbeamGlobals::PluginServicesEnabled();
  const bool connectedBefore = HornbeamGlobals::ConnectedToCore();
  int retriesLeft = 1;
  int relaunchesLeft = kMaxRelaunches;
  ++sCallsInRetry;
  unsigned int status = call();
  while (IsAgentGone(status)) {
    OutputIndentedAndFormattedString(
        0, "Agent not running:  error code = %s",
        status == GAgentIF::kShutdown ? "GAgentIF_kShutdown" : "GIPCClient_kServiceUnavailable");
    bool again = false;
    if (retriesLeft != 0) {
      OutputIndentedAndFormattedString(
          0, "Agent not running, automatically relaunching agent and retrying command");
      --retriesLeft;
      again = AttemptRelaunchTryAgain(relaunchesLeft);
    } else if (relaunchesLeft > 0 && WarnUserAgentRelaunchFailed()) {
      OutputIndentedAndFormattedString(0, "Agent not running, relaunching agent and retrying command");
      again = AttemptRelaunchTryAgain(relaunchesLeft);
    }
    if (!again) {
      OutputIndentedAndFormattedString(
          0, "Agent not running, done attempting to relaunch.  Disabling plugin functionality");
      DisableServices();
      break;
    }
    status = call();
  }
  --sCallsInRetry;
  // The loss switched the services off on the way, by the box that tells of it or by the agent's own word;
  // the agent is back, so they are again what they were.
  if (connectedBefore && !IsAgentGone(status) && !HornbeamGlobals::ConnectedToCore()) {
    HornbeamGlobals::SetPluginServicesEnabled(servicesBefore);
    HornbeamGlobals::SetConnectedToCore(true);
    PanelManager::GetSharedInstance()->SetEnabled(true);
  }
  return status;
}

bool CoreAgentInterface::WarnUserAgentRelaunchFailed() {
  AskUserToRelaunchAgent();
  return true;
}

void CoreAgentInterface::AskUserToRelaunchAgent() {
  DisableServices();
  if (LoomInterface* loom = HornbeamGlobals::GetSharedLoomInterface()) {
    loom->ShowFontManagerNotFoundMessageBox();
  }
}

bool CoreAgentInterface::AttemptRelaunchTryAgain(int& relaunchesLeft) {
  while (relaunchesLeft > 0) {
    --relaunchesLeft;
    const int status = RelaunchOspreyAgent();
    if (status != 1 && status != kCouldNotLaunch) return true;
    LoomInterface* loom = HornbeamGlobals::GetSharedLoomInterface();
    if (relaunchesLeft == 0 || loom == nullptr || !loom->ShowCoreAgentMissingMessageBox()) return false;
  }
  return false;
}

int CoreAgentInterface::RelaunchOspreyAgent() {
  const int status = LaunchOspreyAgentIfNeeded();
  if (status == kLaunched) ShuttleLoader::GetSharedInstance()->ResetPluginFacadeInstance();
  return status;
}

// Any failure of the launcher counts as a missing agent, so that the user is asked and can end the retries.
int CoreAgentInterface::LaunchOspreyAgentIfNeeded() {
  return FindAndLaunchKiln(nullptr) == 0 ? kLaunched : kCouldNotLaunch;
}

bool CoreAgentInterface::AreSchemaVersionsInSync() {
  int inSync = 1;
  CallUnderRetryRule(
      [&inSync] { return ShuttleLoader::GetSharedInstance()->GetAreSchemaVersionsInSync(&inSync); });
  if (inSync == 0) {
    OutputIndentedAndFormattedString(
        0, "WARNING:  CoreAgentInterface::AreSchemaVersionsInSync() returning FALSE");
  }
  return inSync != 0;
}

int CoreAgentInterface::ProcessNotifications() {
  if (sProcessingNotifications) return 0;
  const ScopedFlag processing(sProcessingNotifications);
  // A response may delete this manager, by a quit from inside a message box: the queue is held, and the
  // manager isn't touched any more when it is no longer the one that takes notifications.
  const std::shared_ptr<CoreAgentPluginNotificationQueue> queue = m_queue;
  const int handled = queue->ProcessAllNotifications();
  if (CurrentQueue() == queue) CheckAgentHealth();
  return handled;
}

void CoreAgentInterface::CheckAgentHealth() {
  const time_t now = std::chrono::system_clock::to_time_t(platform::Clock::Get().WallNow());
  // While a call is bringing the agent back, the retry rule alone says what becomes of the services.
  if (now - lastCoreAgentCheckTime <= kSecondsBetweenHealthChecks || !HornbeamGlobals::ConnectedToCore() ||
      sCallsInRetry != 0) {
    return;
  }
  lastCoreAgentCheckTime = now;
  int running = 0;
  unsigned int status = 0;
  for (int tries = 0; tries < kHealthCheckTries; ++tries) {
    status = ShuttleLoader::GetSharedInstance()->GetIsCoreAgentProcessRunning(&running);
    if (status == 0) break;
  }
  if (status == 0 && running != 0) return;
  OutputIndentedAndFormattedString(
      0,
      "Disabling plug-in services in CoreAgentInterface::ProcessNotifications() because Kiln is no longer "
      "running.");
  DisableServices();
  PanelManager::GetSharedInstance()->SetEnabled(false);
  AskUserToRelaunchAgent();
}
