#pragma once

#include <CoreFoundation/CoreFoundation.h>

#include <atomic>
#include <memory>
#include <string>

#include "Memory/RetainPtr.h"

class FontActivationTracker;
class LoomInterface;

/// What the plug-in runs inside, what it may do at this moment, and the two objects that all its parts share.
///
/// Life:
///   1. Load: the Identify... operations record who the plug-in and its host are; nothing changes that later.
///   2. Start-up and run: the flags follow the host, the agent and the user.
///   3. CleanUpOnShutdown() drops the shared objects and most of the identity. From then on the object
///   getters give null, so that a late tick of a timer or a late signal of the host finds nothing to work
///   with.
///
/// It knows hosts by name only, so that other hosts' plug-ins can share it.
///
/// Thread: main; start-up may run on another one before it.
class HornbeamGlobals {
 public:
  HornbeamGlobals() = delete;

  /// The one question "may the plug-in work": services enabled, logged in, and the user has a workgroup.
  static bool ArePluginServicesEnabled();

  /// The flag of SetPluginServicesEnabled() alone, whatever login and workgroups say.
  static bool PluginServicesEnabled() { return sPluginServicesEnabled; }
  static bool ConnectedToCore() { return sConnectedToCore; }
  static bool LoggedIn() { return sLoggedIn; }
  static bool UserHasWorkgroups() { return sUserHasWorkgroups; }
  static bool BulkReplicationRunning() { return sBulkReplicationRunning; }
  static bool IncrementalReplicationRunning() { return sIncrementalReplicationRunning; }
  /// Either kind of replication.
  static bool ReplicationRunning() { return sBulkReplicationRunning || sIncrementalReplicationRunning; }
  static bool DisplayedSchemaError() { return sDisplayedSchemaError; }

  /// Host and font manager fit. Logged, like the next two and the replication setters.
  static void SetPluginServicesEnabled(bool enable);
  static void SetConnectedToCore(bool connected);
  static void SetLoggedIn(bool loggedIn);
  static void SetUserHasWorkgroups(bool hasWorkgroups);
  static void SetBulkReplicationRunning(bool isReplicating);
  static void SetIncrementalReplicationRunning(bool isReplicating);
  static void SetDisplayedSchemaError(bool displayed);

  /// Steps of the idle task that happen once a process. The idle task alone sets them.
  static std::atomic<bool> MenusPreparedForFontManager;
  static std::atomic<bool> StartupLoginChecked;
  static std::atomic<bool> StartupWorkgroupsChecked;
  static std::atomic<bool> StartupSchemaVersionsChecked;
  static std::atomic<bool> FontRefreshPending;

  /// Stores the host's code, retained. With null it takes the code that belongs to the bundle ID, when that
  /// is set; without one the code stays null.
  static void IdentifyPluginHostApp(CFStringRef hostApp);
  /// Each stores its value, retained; null forgets it.
  static void IdentifyPluginHostAppVersionPrefix(CFStringRef prefix);
  static void IdentifyPluginHostAppMinimumVersion(CFStringRef version);
  static void IdentifyPluginVersion(CFStringRef version);
  static void IdentifyPluginBundleID(CFStringRef bundleID);
  static void IdentifyPluginInterfaceVersion(CFStringRef version);
  static void IdentifyPluginBinaryPath(const std::string& path);

  /// Borrowed, null until identified.
  static CFStringRef GetPluginBundleIdentifier() { return sPluginBundleIdentifier.get(); }
  /// UTF-8; empty until identified.
  static std::string GetPluginHostApp();
  static std::string GetPluginHostAppVersionPrefix();
  static std::string GetPluginHostAppMinimumVersion();
  static std::string GetPluginVersion();
  static std::string GetPluginBinaryPath();

  /// The host's code for a plug-in's bundle ID, UTF-8; empty, with a log line, for an unknown one.
  static std::string MapBundleIDtoHostApp(CFStringRef bundleID);

  /// The number by which the agent's library knows a kind of host: InDesign 4, InCopy 5, Illustrator 3,
  /// Photoshop 2, After Effects 7, else 0. Told by the beginning of the host's code.
  static int GetHostTypeFromHostAppID();
  static int GetHostTypeFromHostAppID(const std::string& hostApp);

  static bool HostAppIsInCopy();
  static bool HostAppIsInDesign();
  static bool HostAppIsPhotoshop();
  static bool HostAppIsIllustrator();
  /// Wider than the host type: also a code that holds "AECC" anywhere.
  static bool HostAppIsAfterEffects();
  static bool HostAppIsSketch();

  /// The two letters by which the agent's library files a host's documents; empty for an unknown host.
  static std::string GetHostAppCategory();

  /// The shared interface to the UI framework, made on first call; whether the framework is up is the
  /// object's own IsValid(). Null after CleanUpOnShutdown().
  static LoomInterface* GetSharedLoomInterface();

  /// For tests: puts an interface, such as one over a fake framework, in the place of the shared one. One
  /// that isn't null also takes a shutdown back.
  ///
  /// \return What stood there.
  static std::unique_ptr<LoomInterface> ReplaceSharedLoomInterfaceForTesting(
      std::unique_ptr<LoomInterface> loomInterface);

  /// The shared tracker, made on first call with the shared LoomInterface. Null after CleanUpOnShutdown().
  static FontActivationTracker* GetSharedFontActivationTracker();

  /// The host's name as its users know it. Borrowed; null without LoomInterface or host code.
  static CFStringRef GetHostAppDisplayName();

  /// Hands a document's font list to the font manager, without activation.
  ///
  /// \param path  The document's path, UTF-8.
  /// \param fonts  Font records. Not owned.
  /// Does nothing without LoomInterface, display name or client library.
  static void SaveDocumentFonts(const std::string& path, CFArrayRef fonts);

  /// Calls the callback twice with the context, when it isn't null.
  static void RefreshActiveFontList(void (*callback)(void* context), void* context);

  /// Ends it all at the host's quit: services off, the tracker and LoomInterface gone, the client library
  /// told, host code, plug-in version, bundle ID and interface version forgotten.
  static void CleanUpOnShutdown();

 private:
  static std::atomic<bool> sPluginServicesEnabled;
  static std::atomic<bool> sConnectedToCore;
  static std::atomic<bool> sLoggedIn;
  static std::atomic<bool> sUserHasWorkgroups;
  static std::atomic<bool> sBulkReplicationRunning;
  static std::atomic<bool> sIncrementalReplicationRunning;
  static std::atomic<bool> sDisplayedSchemaError;

  static RetainPtr<CFStringRef> sHostApp;
  static RetainPtr<CFStringRef> sHostAppVersionPrefix;
  static RetainPtr<CFStringRef> sHostAppMinimumVersion;
  static RetainPtr<CFStringRef> sPluginVersion;
  static RetainPtr<CFStringRef> sTalworthPluginInterfaceVersion;
  static RetainPtr<CFStringRef> sPluginBundleIdentifier;
  static std::unique_ptr<std::string> pPluginBinaryPath;

  static std::atomic<bool> sShutDown;
  static std::unique_ptr<LoomInterface> sLoomInterface;
  static std::unique_ptr<FontActivationTracker> sFontActivationTracker;
};
