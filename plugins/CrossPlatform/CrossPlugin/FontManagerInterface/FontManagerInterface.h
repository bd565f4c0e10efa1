#pragma once

#include <CoreFoundation/CoreFoundation.h>

#include <atomic>
#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "FontManagerInterface/FontNameForm.h"
#include "FontManagerInterface/FontOrSetInfoRec.h"
#include "FontManagerInterface/TypeOfFontName.h"
#include "GMutex.h"

/// The facade through which the whole plug-in speaks to the font manager: find fonts, read their state,
/// activate and deactivate them, select a workgroup. Nothing above it knows how the answers are obtained.
///
/// Every operation has a neutral default, apart from the few that a font manager can't do without, so that a
/// substitute which overrides only some of them serves as a font manager where there is no agent.
///
/// Life of the one manager: none; live, from the first successful CompatibleFontManagerIsRunning(); gone,
/// from OnHostAppShuttingDown() on. It isn't made again.
///
/// Results: 0 is success; -1 an operation not done, -50 a bad parameter, 1000 (kErrorHornbeamNotRunning) an
/// agent that has gone; any other value is the agent's own code, unchanged. Names and paths are UTF-8. Array
/// arguments are never owned; objects handed out through a pointer or as CFStringRef belong to the caller.
///
/// Workgroup IDs: kAllWorkgroups stands for all workgroups together, 0 for none selected.
///
/// Thread: the host's main thread, except GetFontManager(), which any thread may call.
class FontManagerInterface {
 public:
  using FontOrSetInfoRec = ::FontOrSetInfoRec;

  /// The selection "all workgroups together".
  static constexpr int kAllWorkgroups = -2;

  FontManagerInterface() = default;
  FontManagerInterface(const FontManagerInterface&) = delete;
  FontManagerInterface& operator=(const FontManagerInterface&) = delete;
  virtual ~FontManagerInterface() = default;

  // The virtual operations stand in the order of the published table of the facade; it doesn't change.

  /// Connections of earlier font managers.
  virtual bool ConnectedToHornbeam();
  virtual bool ConnectedToHornbeamStudio();
  /// Whether the manager is a client of the agent; the tracker's batched calls ask for it.
  virtual bool ConnectedToCoreAgent();
  /// Whether the agent works without a server.
  virtual bool RunningStandalone();
  virtual bool GoogleWebFontsEnabled();
  virtual int16_t DisconnectFromFontManager();
  virtual void OnServerConnectionLost();
  virtual bool IsFontManagerConnected();
  virtual void SetFontManagerConnected(bool connected);
  virtual void DoEnableLDConnection();
  virtual bool FontManagerIsClientServer();
  virtual int SetFontAutoActivationStatus(bool enabled);

  /// The database IDs of the fonts of a name, in the selected workgroup first.
  virtual int FontIDsForPostScriptName(const std::string& name, long workgroupID,
                                       std::vector<unsigned long>& outIDs);
  virtual int FontIDsForFamilyName(const std::string& name, long workgroupID,
                                   std::vector<unsigned long>& outIDs);

  /// Whether this client's activation of each font still stands.
  virtual std::map<unsigned int, bool> GetClientFontActivationStates(std::vector<unsigned int> fontIDs);
  /// Whether each font is active, whoever activated it. Keyed by database ID; empty on failure.
  virtual std::map<unsigned int, bool> GetFontIsActivated(CFArrayRef fonts) = 0;
  /// The ID of the font that each font conflicts with, or 0. Empty on failure.
  virtual std::map<unsigned int, unsigned int> GetFontConflicts(std::vector<unsigned int> fontIDs);

  /// Matches and activates a document's fonts.
  ///
  /// \param matchedFontData  Receives the matched records; kGM_IsActiveKey is as it was before the call.
  /// \param problemFontData  Receives the records that need a decision.
  virtual int ActivateDocumentFontsByPath(const char* documentPath, CFArrayRef fonts,
                                          CFMutableArrayRef matchedFontData,
                                          CFMutableArrayRef problemFontData) = 0;
  virtual int ActivateFontByID(CFDictionaryRef font, const std::string& documentIdentifier,
                               void** outDeactivationData) = 0;
  /// \param fontsActivated  Receives the records that became active. May be null.
  /// \param fontsRefused  Receives the records that the agent's compliance rules refuse. May be null.
  virtual int ActivateFontsByID(CFArrayRef fonts, const std::string& documentIdentifier,
                                void** outDeactivationData, CFMutableArrayRef fontsActivated,
                                CFMutableArrayRef fontsRefused) = 0;
  virtual int DeactivateFont(CFDictionaryRef font, void* deactivationData) = 0;
  /// An empty array is accepted, with result 0.
  ///
  /// \param fontsDeactivated  Receives the records that were deactivated. May be null.
  virtual int DeactivateFonts(CFArrayRef fonts, void* deactivationData,
                              CFMutableArrayRef fontsDeactivated) = 0;

  /// Counts the fonts of a name. GetNamedFontInfo() then reads them by an index from 1 to `*outCount`, and
  /// EndGetGlyphMarkInfo() ends the walk; `outToken` connects the three.
  virtual int CountNamedFonts(std::string name, TypeOfFontName type, long workgroupID, long* outCount,
                              std::string& outToken);
  /// \param outRec  Zeroed first; its fontInfo is the caller's to release.
  virtual int GetNamedFontInfo(std::string name, TypeOfFontName type, long workgroupID, long index,
                               std::string token, FontOrSetInfoRec* outRec);
  virtual int GetFontInfoByID(CFDictionaryRef font, FontOrSetInfoRec* outRec);
  /// \param outName  Receives a name that is the caller's to release; untouched on failure.
  virtual int GetPostscriptNameByID(CFStringRef& outName, int workgroupID, unsigned int fontID);
  /// The GlyphMark slug of one font as zero-ended UTF-8.
  ///
  /// \param inOutBufferSize  The buffer's size in bytes.
  virtual int GetGlyphMarkInfo(unsigned int databaseID, CFDictionaryRef fontInfo, char* outXMLBuffer,
                               unsigned long* inOutBufferSize);
  virtual int EndGetGlyphMarkInfo(std::string token);
  /// \param matchedFonts  Fonts that are on their way already, left out of the result. May be null.
  virtual int FindFontsInSameFamilyForActivation(CFDictionaryRef font, CFArrayRef matchedFonts,
                                                 int workgroupID, CFMutableArrayRef outFontsInFamily);

  virtual int16_t MakeSetForDocumentFonts(CFStringRef documentName, CFArrayRef fonts);
  virtual int16_t CollectFontsUsedByCurrentDocument(const std::string& documentName,
                                                    const std::string& documentPath, CFArrayRef fonts);
  /// Works off what the agent has reported, on the main thread. The number of notifications handled.
  virtual int ProcessNotifications();
  virtual bool AreSchemaVersionsInSync();

  /// The workgroups that the user may work in, one record each with ID, name and type.
  ///
  /// \param outWorkgroups  Receives an array that is the caller's to release; may come back null.
  virtual int GetAllWorkgroupsForUser(CFArrayRef* outWorkgroups, bool includeAllWorkgroup,
                                      bool includeSystemWorkgroup, bool includeTypekitLibrary) = 0;
  virtual bool CheckForWorkgroups();
  /// Selects a workgroup. 0 always.
  virtual int SetDefaultWorkgroupID(int workgroupID);
  virtual int16_t SetDefaultWorkgroupName(CFStringRef name);
  /// The selected workgroup's name, the caller's to release; null when there is none.
  virtual CFStringRef GetDefaultWorkgroupName();
  /// The first workgroup of that name.
  ///
  /// \return -1 when there is none or an argument is null, with `*outID` untouched.
  virtual int16_t GetWorkgroupID(CFStringRef name, int* outID);
  /// The caller's to release; null for an unknown ID.
  virtual CFStringRef GetWorkgroupNameFromID(long workgroupID);
  /// Takes the fonts of disabled remote workgroups out of the array.
  virtual int RemoveRemoteFonts(CFMutableArrayRef fonts) = 0;
  /// Writes kGM_WorkgroupNameKey into each font whose workgroup is known.
  virtual int AddWorkgroupNamesToFonts(CFArrayRef fonts);
  /// The name of the first record with that ID, the caller's to release; null for a null array or no match.
  virtual CFStringRef FindWorkgroupIDGetName(long workgroupID, CFArrayRef workgroups);
  virtual bool IsAllWorkgroups(int workgroupID);
  virtual bool IsSelectedWorkgroupLocal();
  virtual bool IsRemoteWorkgroupTypeDisabled(long type);
  virtual bool CanActivateFromAllWorkgroups();
  virtual bool CanExportFromWorkgroup(CFArrayRef fonts);
  virtual bool CannotExportFromSomeWorkgroup();

  virtual bool IsRunning();
  virtual bool IsLoggedIn();
  virtual bool IsOnline();
  virtual int GoOnline();
  virtual int GoOffline();
  virtual bool IsWindows();
  virtual void DoOnlineOffline();

  /// The one live manager, or null. Every caller tests for null. Any thread, no lock.
  static FontManagerInterface* GetFontManager() { return sm_pFontManager; }

  /// The one live manager while it is connected, else null.
  static FontManagerInterface* GetConnectedFontManager();

  /// Makes the manager on the first call that finds the client library, and says whether it runs and fits.
  ///
  /// \param outPluginName  Receives kHornbeamStudioPlugin or kSycamorePlugin. May be null; untouched when no
  ///        manager is made. Borrowed.
  /// \return False also when the call comes back in on a thread that is inside it.
  static bool CompatibleFontManagerIsRunning(CFStringRef* outPluginName);

  /// Closes all fonts at the tracker, disconnects and deletes the manager.
  static void OnHostAppShuttingDown();

  /// Compares the versions of client library and plug-in, as text: equal, or equal in whole leading fields,
  /// the fourth and later ones free; "1.0.0.0" fits every version but none.
  static bool VersionsAreCompatible(const std::string& a, const std::string& b);

  /// The fonts that the manager holds for a record's name, with their GlyphMark data, the best first. Where
  /// the name finds nothing, it is tried again without illegal characters and then without what drivers
  /// append.
  ///
  /// \param type  Which name of the record is looked up: kGM_PostScriptNameKey or kGM_FamilyKey.
  /// \param outExcludedRemote  Set when a font was left out because its remote workgroup is disabled; else
  ///        untouched.
  /// \param inOutData  Must hold a mutable array, which the result replaces and thereby releases: the caller
  ///        owns exactly one array before and after.
  /// \param outFoundName  Receives the form of the name that found them; untouched when none did. May be
  /// null. \return The status of the last lookup; -1 without a name, array, or room for the name (128 bytes
  /// with
  ///         its ending zero).
  int GetGlyphMarkData(CFDictionaryRef font, TypeOfFontName type, bool& outExcludedRemote, long workgroupID,
                       CFArrayRef* inOutData, FontNameForm* outFoundName = nullptr);

  /// The fonts that the manager holds under exactly that name.
  ///
  /// \param inOutData  Receives a new mutable array that the caller owns when a font was found, and is
  ///        untouched otherwise; what it held before is not released here.
  /// \return The last status; -50 for a null argument. 1000 ends the search, and what was found until then
  ///         stands in the array.
  int GetGlyphMarkDataForFontName(const char* name, TypeOfFontName type, bool& outExcludedRemote,
                                  long workgroupID, CFArrayRef* inOutData);

  /// Whether the user may work in that workgroup. Workgroups of one name count as one.
  bool IsValidWorkgroupForUser(int workgroupID);
  bool UserHasAtLeastOneWorkgroup();
  /// The selected workgroup's ID, kept among the preferences; 0 for none or without LoomInterface.
  static int GetCurrentWorkgroupID();
  bool IsAllWorkgroupsSelected();
  /// Makes sure that the selection is one that the user may work in, or marks that there is none.
  void InitializeDefaultWorkgroup();
  static void SetValidWorkgroupSelected(bool valid);
  static bool IsValidWorkgroupSelected();
  /// Selects a workgroup by rule when the user has lost the selected one: the same if it is there again, else
  /// all together where allowed, else the first.
  void HandleSelectWorkgroup();
  static bool IsSelectWorkgroupInProgress();
  static void SetSelectWorkgroupInProgress(bool inProgress);
  /// The guard at start-up, at log-in and after replication: whether services may go on.
  static bool CheckSelectWorkgroup();

 protected:
  /// Guards making and deleting the manager, not the calls through it.
  static GMutex sm_Mutex;
  static std::atomic<FontManagerInterface*> sm_pFontManager;
  static bool sValidWorkgroupSelected;
  static bool sSelectWorkgroupInProgress;
};

/// Which edition of the font manager the UI framework serves: without a server, and server-backed.
extern const CFStringRef kHornbeamStudioPlugin;
extern const CFStringRef kSycamorePlugin;
