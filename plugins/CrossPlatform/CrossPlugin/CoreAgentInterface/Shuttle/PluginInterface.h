#pragma once

#include <CoreFoundation/CoreFoundation.h>

/// The types of the agent's client library, as its entries use them. The library is closed and is reached by
/// names alone, so these declarations are the plug-in's own; ShuttleEntries.h lists the entries.
namespace PluginInterface {

/// The session that the library keeps for this process. It changes after a relaunch of the agent, so it is
/// fetched anew for every call and never kept.
using FacadeRef = void*;

/// 0 is success; GetNameForErrorCode() names the others.
using ErrCode = unsigned int;

/// What a notification is about; the constants below are all that the plug-in listens to.
using ECallbackKind = int;

/// Called on a thread of the library's. `data` lives only during the call. Returns 0.
using NotifyProc = int (*)(ECallbackKind kind, void* data);

inline constexpr ECallbackKind kAgentShutdown = 0;                    // no data
inline constexpr ECallbackKind kOnlineStateChanged = 1;               // const bool*
inline constexpr ECallbackKind kLoggedInStateChanged = 2;             // CFDictionaryRef
inline constexpr ECallbackKind kWorkgroupsChanged = 3;                // no data
inline constexpr ECallbackKind kUserPermissionsChanged = 4;           // no data
inline constexpr ECallbackKind kFontActivated = 8;                    // const unsigned int*, a font ID
inline constexpr ECallbackKind kFontDeactivated = 9;                  // const unsigned int*
inline constexpr ECallbackKind kFontMissing = 10;                     // const unsigned int*
inline constexpr ECallbackKind kGoogleWebFontsEnabled = 14;           // const bool*
inline constexpr ECallbackKind kGoogleReplicationProgress = 15;       // CFDictionaryRef
inline constexpr ECallbackKind kGoogleReplicationStopped = 16;        // no data
inline constexpr ECallbackKind kPreviewPNGsRendered = 17;             // CFDictionaryRef
inline constexpr ECallbackKind kSmartListsChanged = 18;               // no data
inline constexpr ECallbackKind kBulkReplicationProgress = 19;         // CFDictionaryRef
inline constexpr ECallbackKind kBulkReplicationStopped = 20;          // no data
inline constexpr ECallbackKind kIncrementalReplicationProgress = 21;  // CFDictionaryRef
inline constexpr ECallbackKind kIncrementalReplicationStopped = 22;   // no data
inline constexpr ECallbackKind kPanelDataChanged = 23;                // no data
inline constexpr ECallbackKind kDesignActivationNonCompliant = 24;    // const unsigned int*
inline constexpr ECallbackKind kOfflineDownloadFinished = 25;         // no data
inline constexpr ECallbackKind kFontServerReplicationProgress = 27;   // CFDictionaryRef
inline constexpr ECallbackKind kFontServerReplicationStopped = 28;    // no data

/// Keys of the dictionary that comes with kLoggedInStateChanged.
inline const CFStringRef kIsLoggedInKey = CFSTR("isLoggedIn");
inline const CFStringRef kServerTypeKey = CFSTR("serverType");

}  // namespace PluginInterface
