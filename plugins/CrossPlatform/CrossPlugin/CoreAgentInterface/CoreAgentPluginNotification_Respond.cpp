// What a notification means to the plug-in's own state. Main thread.

#include <cstdint>

#include "Activation/State/HornbeamGlobals.h"
#include "CoreAgentInterface/CoreAgentPluginNotification.h"
#include "CoreAgentInterface/PluginNotificationKeys.h"
#include "FontManagerInterface/EServerType.h"
#include "FontManagerInterface/FontManagerInterface.h"
#include "LoomInterface/LoomInterface.h"
#include "Memory/CFCast.h"
#include "Utilities/DebugUtils.h"

namespace {

constexpr int kServerTypeWhenAbsent = 1;

// The agent sends flags as booleans; a number does as well.
bool ReadFlag(CFTypeRef value, bool fallback) {
  if (CFBooleanRef flag = dynamicCF<CFBooleanRef>(value)) return CFBooleanGetValue(flag);
  int64_t number = 0;
  CFNumberRef asNumber = dynamicCF<CFNumberRef>(value);
  if (asNumber == nullptr || !CFNumberGetValue(asNumber, kCFNumberSInt64Type, &number)) return fallback;
  return number != 0;
}

EServerType ReadServerType(CFDictionaryRef dictionary) {
  int32_t type = kServerTypeWhenAbsent;
  CFNumberRef number =
      dynamicCF<CFNumberRef>(CFDictionaryGetValue(dictionary, PluginInterface::kServerTypeKey));
  if (number != nullptr) CFNumberGetValue(number, kCFNumberSInt32Type, &type);
  return static_cast<EServerType>(type);
}

}  // namespace

bool CoreAgentPluginNotification::IsFor(CFStringRef key) const {
  return CFDictionaryContainsKey(m_dictionary.get(), key);
}

bool CoreAgentPluginNotification::GetFlag(CFStringRef key, bool fallback) const {
  return ReadFlag(CFDictionaryGetValue(m_dictionary.get(), key), fallback);
}

int CoreAgentPluginNotification::Respond() {
  if (FontManagerInterface::GetFontManager() == nullptr) return -1;
  // The first key that is there settles what the notification is.
  if (IsFor(kPluginNotification_OnlineStateChanged)) {
    if (LoomInterface* loom = HornbeamGlobals::GetSharedLoomInterface()) {
      loom->SetIsOnline(GetFlag(kPluginNotification_OnlineStateChanged, true));
    }
  } else if (IsFor(kPluginNotification_LoggedInStateChanged)) {
    RespondToLoggedInState();
  } else if (IsFor(kPluginNotification_WorkgroupsChanged) ||
             IsFor(kPluginNotification_UserPermissionsChanged)) {
    RespondToWorkgroups();
  } else if (IsFor(kPluginNotification_AgentShutdown)) {
    RespondToAgentShutdown();
  } else if (IsFor(kPluginNotification_BulkReplicationProgress)) {
    HornbeamGlobals::SetBulkReplicationRunning(true);
  } else if (IsFor(kPluginNotification_BulkReplicationStopped)) {
    HornbeamGlobals::SetBulkReplicationRunning(false);
    FontManagerInterface::CheckSelectWorkgroup();
  } else if (IsFor(kPluginNotification_IncrementalReplicationProgress)) {
    HornbeamGlobals::SetIncrementalReplicationRunning(true);
  } else if (IsFor(kPluginNotification_IncrementalReplicationStopped)) {
    HornbeamGlobals::SetIncrementalReplicationRunning(false);
    FontManagerInterface::CheckSelectWorkgroup();
  }
  return 0;
}

void CoreAgentPluginNotification::RespondToLoggedInState() {
  const bool isLoggedIn = GetFlag(PluginInterface::kIsLoggedInKey, false);
  if (ReadServerType(m_dictionary.get()) == EServerType::kNotOwnLogin) return;
  LoomInterface* loom = HornbeamGlobals::GetSharedLoomInterface();
  if (loom == nullptr) return;

  const bool wasLoggedIn = HornbeamGlobals::LoggedIn();
  if (wasLoggedIn && !isLoggedIn) {
    OutputIndentedAndFormattedString(0, "Disabling plugin functionality until restart.");
    HornbeamGlobals::SetPluginServicesEnabled(false);
    loom->ShowNotLoggedInMessageBox(false);
  }
  HornbeamGlobals::SetLoggedIn(isLoggedIn);
  if (!wasLoggedIn) {
    OutputIndentedAndFormattedString(
        0, "%s",
        HornbeamGlobals::ArePluginServicesEnabled()
            ? "Re-enabling plugin functionality, now that the user has logged-in."
            : "User logged in, but plugin functionality was disabled for non-login reasons.");
  }
  if (isLoggedIn && !HornbeamGlobals::ReplicationRunning()) {
    FontManagerInterface::SetValidWorkgroupSelected(false);
    FontManagerInterface::CheckSelectWorkgroup();
  }
}

void CoreAgentPluginNotification::RespondToWorkgroups() {
  if (FontManagerInterface::IsValidWorkgroupSelected() || HornbeamGlobals::ReplicationRunning()) return;
  FontManagerInterface::GetFontManager()->InitializeDefaultWorkgroup();
  FontManagerInterface::CheckSelectWorkgroup();
}

void CoreAgentPluginNotification::RespondToAgentShutdown() {
  OutputIndentedAndFormattedString(0, "Disabling plugin functionality");
  HornbeamGlobals::SetPluginServicesEnabled(false);
  HornbeamGlobals::SetConnectedToCore(false);
  if (LoomInterface* loom = HornbeamGlobals::GetSharedLoomInterface()) {
    OutputIndentedAndFormattedString(0, "Informing user that plugin functionality will be disabled...");
    loom->ShowFontManagerNotFoundMessageBox();
  }
}
