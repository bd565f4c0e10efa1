#pragma once

#include <CoreFoundation/CoreFoundation.h>

#include <memory>
#include <string>

#include "LoomInterface/LoomDictionary.h"
#include "LoomInterface/LoomFunctions.h"
#include "Memory/RetainPtr.h"

/// The plug-in's way to the UI framework, the bundle "TalworthPlugins.framework": message boxes, dialogs and
/// all stored preferences.
///
/// Life: the constructor looks for the framework, binds it and starts it. From then on the instance is either
/// valid or not, until it goes. An instance that isn't valid shows nothing and answers as if every preference
/// were off and every text unknown; callers that need to know ask IsValid() and GetError().
///
/// Message boxes take keys that the framework turns into sentences, so no text is kept here. Strings that an
/// operation returns are the caller's where it says so.
///
/// Thread: main only. Message boxes and dialogs come back when the user has answered.
class LoomInterface {
 public:
  // What GetError() tells.
  static constexpr int kUp = 0;
  static constexpr int kInitializationFailed = 1;
  static constexpr int kFrameworkNotFound = 2;
  static constexpr int kVersionRefused = 3;

  /// The bundle's name, in each of its three places.
  static constexpr const char* kFrameworkName = "TalworthPlugins.framework";

  /// Shows a text in the host's own alert.
  using HostMessageProc = void (*)(CFStringRef text);

  /// The bound entries and the bundle they came from.
  struct OsData {
    LoomFunctions functions;
    RetainPtr<CFBundleRef> bundle;
  };

  /// Looks for the framework in the plug-in's private frameworks, then beside the running font manager, which
  /// is started if it doesn't run, then in /Library/Frameworks below the system's root.
  ///
  /// \param bundleIdentifier  The plug-in's own bundle. Any of the four may be null.
  LoomInterface(CFStringRef hostApp, CFStringRef pluginVersion, CFStringRef pluginInterfaceVersion,
                CFStringRef bundleIdentifier);

  /// Starts on a table that was filled elsewhere, such as a fake of the framework.
  LoomInterface(const LoomFunctions& functions, CFStringRef hostApp, CFStringRef pluginVersion,
                CFStringRef pluginInterfaceVersion);

  LoomInterface(const LoomInterface&) = delete;
  LoomInterface& operator=(const LoomInterface&) = delete;
  virtual ~LoomInterface();

  /// Finds, binds and starts the framework; the constructor's work. Does nothing when it is up.
  void InitializeFramework(CFStringRef bundleIdentifier);

  /// Lets go of the framework; the status stays. The bundle's code stays in the process.
  void DestroyFramework();

  bool IsValid() const { return m_nStatus == kUp && m_osData != nullptr; }
  int GetError() const { return m_nStatus; }

  /// The bound entries, null without a framework. Owned by this object.
  const OsData* GetOpaqueOsData() const { return m_osData.get(); }
  const OsData* GetMacData() const { return GetOpaqueOsData(); }

  // Preferences. A key that was never set reads as false and 0.
  bool GetPreferenceForKey(CFStringRef key) const;
  void SetPreferenceForKey(CFStringRef key, bool value);
  int GetLongPreferenceForKey(CFStringRef key) const;
  void SetLongPreferenceForKey(CFStringRef key, int value);

  /// True when preferences were ever stored.
  bool DoPreferencesExist() const;

  bool GetEnabledAutoActivationPref() const;

  /// Always true in a host with the next-generation plug-in, whatever the preference says.
  bool GetEnabledGlyphMark() const;

  bool GetPickBestMatch() const;
  bool GetSupportEmbeddedObjects() const;
  bool GetCloseFontsOnHostAppQuit() const;
  bool GetCloseFontsOnDocClose() const;
  bool GetActivateEntireFamily() const;
  bool GetEnabledLoggingPref() const;

  /// The selected workgroup: -2 for all of them, 0 for none.
  int GetCurrentWorkgroupID() const;
  void SetCurrentWorkgroupID(int workgroupID);

  /// True when the bundle "com.talworth.PluginCore" is loaded in the process.
  bool isHostAppUsingNextGenPlugin() const;

  /// Shows a box with `buttons` buttons and waits.
  ///
  /// \return The button, 1 for the first; 0 when nothing could be shown.
  int ShowMessageBox(CFStringRef headerKey, CFStringRef messageKey, int buttons);

  void ShowFontManagerNotFoundMessageBox();
  void ShowHornbeamOldVersionMessageBox();
  void ShowUnsupportedHostAppMessageBox();
  void ShowNotLoggedInMessageBox(bool offerLogin);

  /// Asks whether to try again to reach the agent.
  ///
  /// \return True for the first button, try again. False without a manager, with nothing shown.
  bool ShowCoreAgentMissingMessageBox();

  void ShowGoOnlineErrorMessageBox();
  void ShowNoWorkgroupsMessageBox();
  void ShowCannotExportMessageBox();
  void ShowFontsMissingForExportMessageBox(bool offline);
  void ShowSetNameTooLongMessageBox();
  void ShowCoreAgentOutOfSyncMessageBox();
  void ShowVaultInUseMessage(CFStringRef path);
  void ShowVaultNotAvailableMessage(CFStringRef path);
  void ShowVaultNeedsUpgradeMessage();

  /// The one box that has to do without the framework: its text comes from the plug-in's own bundle, and the
  /// host shows it. Only logged when no host alert was given.
  void ShowLoomNotFoundMessageBox();

  /// Gives the alert for ShowLoomNotFoundMessageBox(). Null takes it away.
  static void SetHostMessageProc(HostMessageProc proc);

  void ShowAboutBox();
  void ShowPreferences();

  /// Lets the user choose a font for each record; the choice is written into the records under
  /// kGM_MatchedFontKey, so they must be mutable.
  void ShowResolveFonts(CFArrayRef problemFonts);

  /// \param outString  Receives a new string, which the caller releases; untouched on a cancel.
  /// \return False when the user cancels or nothing could be asked.
  bool AskForOneString(CFStringRef title, CFStringRef prompt, CFStringRef proposed, CFStringRef* outString);

  void SetIsOnline(bool online);

  /// Tells the framework which font manager its texts should speak of.
  void SetFontManagerBundleName(CFStringRef name);

  /// \return The sentence for `key` as a new string, which the caller releases; the key itself when the
  ///         framework doesn't answer. Null for a null key.
  CFStringRef LocalizedString(CFStringRef key) const;

  /// The host's name as its users know it, or null. Not owned by the caller.
  CFStringRef GetHostAppDisplayName() const;

  /// The values that the framework was started with.
  const LoomDictionary& GetStartupDictionary() const { return m_startup; }

 private:
  void SetStartupValues(CFStringRef hostApp, CFStringRef pluginVersion, CFStringRef pluginInterfaceVersion);
  void StartFramework();
  void ShowVaultMessage(CFStringRef messageKey, CFStringRef path);

  int m_nStatus = kFrameworkNotFound;
  bool m_bInitialized = false;
  LoomDictionary m_startup;
  std::unique_ptr<OsData> m_osData;
  RetainPtr<CFStringRef> m_bundleIdentifier;
};
