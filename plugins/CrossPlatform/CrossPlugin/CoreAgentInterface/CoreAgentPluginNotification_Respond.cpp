// What a notification means to the plug-in's own state, and which operation of the host it is. Main thread.

#include <cstdint>
#include <limits>
#include <optional>

#include "Activation/State/HornbeamGlobals.h"
#include "CoreAgentInterface/CoreAgentPluginNotification.h"
#include "CoreAgentInterface/PluginNotificationKeys.h"
#include "FontManagerInterface/EServerType.h"
#include "FontManagerInterface/FontManagerInterface.h"
#include "HostAppInterface/HostAppInterface.h"
#include "LoomInterface/LoomInterface.h"
#include "Memory/CFCast.h"
#include "Panel/PanelManager.h"
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

HostAppInterface& Host() {
  return *HostAppInterface::GetHostAppInterface();
}

// No ID for one that is missing, negative or beyond the 32 bits of an ID.
std::optional<unsigned int> ReadFontID(CFDictionaryRef dictionary) {
  int64_t fontID = -1;
  CFNumberRef number =
      dynamicCF<CFNumberRef>(CFDictionaryGetValue(dictionary, kPluginNotification_FontActivation_Font_ID));
  if (number == nullptr || !CFNumberGetValue(number, kCFNumberSInt64Type, &fontID)) return std::nullopt;
  if (fontID < 0 || fontID > std::numeric_limits<unsigned int>::max()) return std::nullopt;
  return static_cast<unsigned int>(fontID);
}

struct FontRow {
  CFStringRef key;
  void (HostAppInterface::*operation)(unsigned int fontID);
};

const FontRow kFontRows[] = {
    {kPluginNotification_FontActivated, &HostAppInterface::FontActivated},
    {kPluginNotification_DesignActivationNonCompliant,
     &HostAppInterface::DesignActivationFailedComplianceCheck},
    {kPluginNotification_FontDeactivated, &HostAppInterface::FontDeactivated},
    {kPluginNotification_FontMissing, &HostAppInterface::FontMissing},
};

// The kinds of replication. Those with a flag hold off the questions about workgroups while they run.
struct ReplicationRow {
  CFStringRef progressKey;
  CFStringRef stoppedKey;
  void (*setRunning)(bool isReplicating);
  void (HostAppInterface::*progress)(CFDictionaryRef progress);
  void (HostAppInterface::*stopped)();
};

const ReplicationRow kReplicationRows[] = {
    {kPluginNotification_BulkReplicationProgress, kPluginNotification_BulkReplicationStopped,
     &HornbeamGlobals::SetBulkReplicationRunning, &HostAppInterface::BulkReplicationProgress,
     &HostAppInterface::BulkReplicationStopped},
    {kPluginNotification_IncrementalReplicationProgress, kPluginNotification_IncrementalReplicationStopped,
     &HornbeamGlobals::SetIncrementalReplicationRunning, &HostAppInterface::IncrementalReplicationProgress,
     &HostAppInterface::IncrementalReplicationStopped},
    {kPluginNotification_GoogleReplicationProgress, kPluginNotification_GoogleReplicationStopped, nullptr,
     &HostAppInterface::GoogleReplicationProgress, &HostAppInterface::GoogleReplicationStopped},
    {kPluginNotification_FontServerReplicationProgress, kPluginNotification_FontServerReplicationStopped,
     nullptr, &HostAppInterface::FontServerReplicationProgress,
     &HostAppInterface::FontServerReplicationStopped},
};

}  // namespace

bool CoreAgentPluginNotification::IsFor(CFStringRef key) const {
  return CFDictionaryContainsKey(m_dictionary.get(), key);
}

bool CoreAgentPluginNotification::GetFlag(CFStringRef key, bool fallback) const {
  return ReadFlag(CFDictionaryGetValue(m_dictionary.get(), key), fallback);
}

// The first key that is there settles what the notification is.
int CoreAgentPluginNotification::Respond() {
  if (FontManagerInterface::GetFontManager() == nullptr) return -1;
  if (IsFor(kPluginNotification_OnlineStateChanged)) {
    RespondToOnlineState();
  } else if (IsFor(kPluginNotification_LoggedInStateChanged)) {
    RespondToLoggedInState();
  } else if (IsFor(kPluginNotification_PanelDataChanged)) {
    Host().HandlePanelDataChanged();
  } else if (IsFor(kPluginNotification_WorkgroupsChanged) ||
             IsFor(kPluginNotification_UserPermissionsChanged)) {
    RespondToWorkgroups();
  } else if (IsFor(kPluginNotification_AgentShutdown)) {
    RespondToAgentShutdown();
  } else if (!RespondToFont() && !RespondToReplication()) {
    RespondToTheRest();
  }
  return 0;
}

void CoreAgentPluginNotification::RespondToOnlineState() {
  const bool isOnline = GetFlag(kPluginNotification_OnlineStateChanged, true);
  Host().SetIsOnline(isOnline);
  if (LoomInterface* loom = HornbeamGlobals::GetSharedLoomInterface()) loom->SetIsOnline(isOnline);
}

void CoreAgentPluginNotification::RespondToLoggedInState() {
  const bool isLoggedIn = GetFlag(PluginInterface::kIsLoggedInKey, false);
  const EServerType serverType = ReadServerType(m_dictionary.get());
  Host().SetLoggedInState(isLoggedIn, serverType);
  if (serverType == EServerType::kNotOwnLogin) return;
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
    Host().RebuildWorkgroupsMenu();
  }
}

void CoreAgentPluginNotification::RespondToWorkgroups() {
  Host().RebuildWorkgroupsMenu();
  FontManagerInterface* manager = FontManagerInterface::GetFontManager();
  if (manager == nullptr || FontManagerInterface::IsValidWorkgroupSelected() ||
      HornbeamGlobals::ReplicationRunning()) {
    return;
  }
  manager->InitializeDefaultWorkgroup();
  FontManagerInterface::CheckSelectWorkgroup();
}

void CoreAgentPluginNotification::RespondToAgentShutdown() {
  OutputIndentedAndFormattedString(0, "Disabling plugin functionality");
  HornbeamGlobals::SetPluginServicesEnabled(false);
  HornbeamGlobals::SetConnectedToCore(false);
  PanelManager::GetSharedInstance()->SetEnabled(false);
  if (LoomInterface* loom = HornbeamGlobals::GetSharedLoomInterface()) {
    OutputIndentedAndFormattedString(0, "Informing user that plugin functionality will be disabled...");
    loom->ShowFontManagerNotFoundMessageBox();
  }
}

bool CoreAgentPluginNotification::RespondToFont() {
  for (const FontRow& row : kFontRows) {
    if (!IsFor(row.key)) continue;
    if (const std::optional<unsigned int> fontID = ReadFontID(m_dictionary.get())) {
      (Host().*row.operation)(*fontID);
    }
    return true;
  }
  return false;
}

bool CoreAgentPluginNotification::RespondToReplication() {
  for (const ReplicationRow& row : kReplicationRows) {
    if (IsFor(row.progressKey)) {
      if (row.setRunning != nullptr) row.setRunning(true);
      (Host().*row.progress)(m_dictionary.get());
      return true;
    }
    if (IsFor(row.stoppedKey)) {
      if (row.setRunning != nullptr) {
        row.setRunning(false);
        FontManagerInterface::CheckSelectWorkgroup();
      }
      (Host().*row.stopped)();
      return true;
    }
  }
  return false;
}

void CoreAgentPluginNotification::RespondToTheRest() {
  if (IsFor(kPluginNotification_GoogleWebFontsEnabled)) {
    if (IsFor(kPluginNotification_Enabled)) {
      Host().GoogleWebFontsEnabled(GetFlag(kPluginNotification_Enabled, false));
    }
  } else if (IsFor(kPluginNotification_PreviewPNGsRendered)) {
    Host().PreviewPNGsRendered(
        dynamicCF<CFDictionaryRef>(CFDictionaryGetValue(m_dictionary.get(), kPluginNotification_FontPNGs)));
  } else if (IsFor(kPluginNotification_SmartListsChanged)) {
    Host().SmartListsChanged();
  } else if (IsFor(kPluginNotification_OfflineDownloadFinished)) {
    Host().OfflineDownloadFinished();
  }
}
