#pragma once

#include <CoreFoundation/CoreFoundation.h>

#include <cstdint>
#include <ctime>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "FontManagerInterface/FontManagerInterface.h"

class CoreAgentPluginNotification;
class CoreAgentPluginNotificationQueue;

/// The font manager that is a client of the agent: every question goes through the table of ShuttleLoader.
///
/// Life of a connection, kept as flags in HornbeamGlobals:
///   1. Not connected: services off, connected off. From the start, and after a constructor that failed.
///   2. Connected: services, connected and logged in on. The constructor connects.
///   3. Suspended: the user has logged out; services off, connected on.
///   4. Lost: services off, connected off. The agent died and wasn't brought back; only a new start of the
///      plug-in helps, or a relaunch by a call that was already running.
///
/// Work at the agent runs under one retry rule: a call that finds the agent gone relaunches it, the first
/// time without a word, then after telling the user. Queries don't retry; they report what the library said.
///
/// Results are as told at FontManagerInterface. Thread: main, apart from the notification callback. Calls can
/// come back late, with message boxes shown meanwhile.
class CoreAgentInterface : public FontManagerInterface {
 public:
  /// "All workgroups" in the workgroup lists that go to the library; the plug-in's own ID for it is
  /// kAllWorkgroups.
  static constexpr unsigned int kCoreAgentAllWorkgroups = 0;

  /// A workgroup ID that the agent hasn't told yet.
  static constexpr unsigned int kUnknownWorkgroup = 0xFFFFFFFF;

  /// How often one call brings the agent back before it gives up, whatever the user answers.
  static constexpr int kMaxRelaunches = 5;

  /// Connects to the agent and picks a workgroup. Failures show their message box and leave the plug-in's
  /// services off; the object is usable all the same.
  CoreAgentInterface();
  ~CoreAgentInterface() override;

  // Session.
  bool ConnectedToCoreAgent() override;
  /// True also when the agent can't be asked.
  bool RunningStandalone() override;
  int16_t DisconnectFromFontManager() override;
  /// Handles what the agent has reported and, at most every 5 seconds while connected, looks whether the
  /// agent still runs. A call from inside another one does nothing.
  int ProcessNotifications() override;
  bool AreSchemaVersionsInSync() override;
  bool IsRunning() override;
  bool IsLoggedIn() override;
  bool IsWindows() override;
  void DoOnlineOffline() override;
  /// True also when the agent can't be asked.
  virtual bool IsGoogleWebFontsEnabled();

  // Queries.
  int FontIDsForPostScriptName(const std::string& name, long workgroupID,
                               std::vector<unsigned long>& outIDs) override;
  int FontIDsForFamilyName(const std::string& name, long workgroupID,
                           std::vector<unsigned long>& outIDs) override;
  std::map<unsigned int, bool> GetClientFontActivationStates(std::vector<unsigned int> fontIDs) override;
  std::map<unsigned int, bool> GetFontIsActivated(CFArrayRef fonts) override;
  std::map<unsigned int, unsigned int> GetFontConflicts(std::vector<unsigned int> fontIDs) override;
  int CountNamedFonts(std::string name, TypeOfFontName type, long workgroupID, long* outCount,
                      std::string& outToken) override;
  int GetNamedFontInfo(std::string name, TypeOfFontName type, long workgroupID, long index, std::string token,
                       FontOrSetInfoRec* outRec) override;
  int GetFontInfoByID(CFDictionaryRef font, FontOrSetInfoRec* outRec) override;
  int GetPostscriptNameByID(CFStringRef& outName, int workgroupID, unsigned int fontID) override;
  int GetGlyphMarkInfo(unsigned int databaseID, CFDictionaryRef fontInfo, char* outXMLBuffer,
                       unsigned long* inOutBufferSize) override;
  /// CoreErrorCodes::kNotImplemented; there is nothing to end.
  int EndGetGlyphMarkInfo(std::string token) override;
  int FindFontsInSameFamilyForActivation(CFDictionaryRef font, CFArrayRef matchedFonts, int workgroupID,
                                         CFMutableArrayRef outFontsInFamily) override;

  /// The plug-in's activation status for the agent's: 1 inactive, 2 active, 3 temporarily active, 0 unknown.
  static int ComputePluginActivationState(long agentState);

  /// Replaces the agent's status in a record by the plug-in's and writes what follows from it. To be run
  /// exactly once on a record that the library handed out.
  ///
  /// \return -1 for a null record, else 0.
  static int ConvertActivationStateValues(CFMutableDictionaryRef record);

  // Activation.
  int ActivateDocumentFontsByPath(const char* documentPath, CFArrayRef fonts,
                                  CFMutableArrayRef matchedFontData,
                                  CFMutableArrayRef problemFontData) override;
  int ActivateFontByID(CFDictionaryRef font, const std::string& documentIdentifier,
                       void** outDeactivationData) override;
  int ActivateFontsByID(CFArrayRef fonts, const std::string& documentIdentifier, void** outDeactivationData,
                        CFMutableArrayRef fontsActivated, CFMutableArrayRef fontsRefused) override;
  int DeactivateFont(CFDictionaryRef font, void* deactivationData) override;
  int DeactivateFonts(CFArrayRef fonts, void* deactivationData, CFMutableArrayRef fontsDeactivated) override;
  int16_t MakeSetForDocumentFonts(CFStringRef documentName, CFArrayRef fonts) override;
  /// Asks for a folder and exports the document's fonts into it; without fonts it only makes the folder.
  ///
  /// \return 0 also when the user cancels or can't be asked; -1 for an export or a folder that failed.
  int16_t CollectFontsUsedByCurrentDocument(const std::string& documentName, const std::string& documentPath,
                                            CFArrayRef fonts) override;
  int RemoveRemoteFonts(CFMutableArrayRef fonts) override;

  /// Appends to `outFonts`, in order, the fonts that have an ID which isn't among `failedIDs`. A null array
  /// on either side makes it do nothing.
  void CreateFontArrayWithErrorsRemoved(CFArrayRef fonts, CFMutableArrayRef outFonts,
                                        const std::vector<unsigned int>& failedIDs);

  // Workgroups.
  int GetAllWorkgroupsForUser(CFArrayRef* outWorkgroups, bool includeAllWorkgroup,
                              bool includeSystemWorkgroup, bool includeTypekitLibrary) override;
  bool CheckForWorkgroups() override;
  bool IsSelectedWorkgroupLocal() override;
  bool IsRemoteWorkgroupTypeDisabled(long type) override;
  bool CanActivateFromAllWorkgroups() override;
  bool CanExportFromWorkgroup(CFArrayRef fonts) override;
  virtual unsigned int GetGoogleWebFontsLibraryID();
  /// Appends the IDs that scope a lookup in `workgroupID`, in the library's terms.
  virtual void PopulateWorkgroupArray(int workgroupID, std::vector<unsigned int>& outIDs);

  /// The name to show for a workgroup.
  ///
  /// \return A new string, the caller's; null when the agent's own name is to be shown.
  CFStringRef CreateLocalizedWorkgroupName(unsigned int type, const std::string& agentName);
  /// The first workgroup of a type, or kUnknownWorkgroup.
  unsigned int GetSpecialWorkgroupID(long type);
  unsigned int GetSystemWorkgroupID();
  bool GetPermission(bool acrossWorkgroups, const std::string& columnID, int workgroupID);

  // Connection and relaunch.
  void InitializeCoreAgent(const std::string& hostAppID);
  void DeleteCoreAgent();
  /// Tells the user; true always, for "go on".
  bool WarnUserAgentRelaunchFailed();
  /// Relaunches the agent until that succeeds, the user gives up or `relaunchesLeft` is used up.
  ///
  /// \return Whether the failed call is worth another try.
  bool AttemptRelaunchTryAgain(int& relaunchesLeft);
  void AskUserToRelaunchAgent();
  /// 0 when the agent runs afterwards, 2 when it couldn't be brought up.
  int LaunchOspreyAgentIfNeeded();
  /// The same, and on 0 the library starts a new facade.
  int RelaunchOspreyAgent();

  /// Hands one notification to the queue. Any thread.
  void EnqueueNotification(std::unique_ptr<CoreAgentPluginNotification> notification);

  /// The queue of the live manager, for the callback, which may come after the manager has gone; null then.
  /// Any thread.
  static std::shared_ptr<CoreAgentPluginNotificationQueue> CurrentQueue();

 private:
  using AgentCall = std::function<unsigned int()>;

  unsigned int CallUnderRetryRule(const AgentCall& call);
  unsigned int ActivateIDs(const std::vector<unsigned int>& ids, std::vector<unsigned int>& failedIDs,
                           std::vector<unsigned int>& refusedIDs);
  void ReportInitializationError(unsigned int status);
  void CheckAgentHealth();
  int16_t CollectFontsIntoFolder(const std::string& path, CFArrayRef fonts);
  template <unsigned long kCapacity, typename Lookup>
  int FontIDsForName(const std::string& name, long workgroupID, Lookup lookup,
                     std::vector<unsigned long>& outIDs);
  int FontIDsForNameOfType(const std::string& name, TypeOfFontName type, long workgroupID,
                           std::vector<unsigned long>& outIDs);
  void AppendAllWorkgroupsRecord(CFMutableArrayRef workgroups);

  std::shared_ptr<CoreAgentPluginNotificationQueue> m_queue;
  time_t lastCoreAgentCheckTime = 0;
  unsigned int systemWorkgroupID = kUnknownWorkgroup;
  unsigned int googleWebFontsLibID = kUnknownWorkgroup;
};
