#pragma once

#include <CoreFoundation/CoreFoundation.h>

/// The entries of TalworthPluginInterface.framework: plain functions through which a plug-in reaches the font
/// manager. They are bound by name at run time, so name, order and types of the arguments never change.
///
/// Life of the library:
///   1. Loaded: nothing runs, nothing is connected.
///   2. GetPluginFacadeInstance() gives the facade. It doesn't connect and doesn't block.
///   3. The first call that needs the agent connects to it. When the agent's process runs but doesn't listen
///      yet, as a moment after its launch, the call waits, at most 3 s; without such a process it fails at
///      once.
///   4. When the connection breaks, the calls under way end with 0x0200200D. A later call connects anew: the
///      agent knows this process by an identity made once per load, so its activations stay its own.
///   5. ResetPluginFacadeInstance() drops connection and facade; a dropped facade is refused, never followed.
///   6. CleanUpOnShutdown() ends the library's threads and takes its fonts out of the process.
///
/// Facade: every entry that takes one and asks the agent accepts the newest result of
/// GetPluginFacadeInstance() only. Any other value, null and a facade from before a reset among them, gives
/// 0x0200200D with nothing sent.
///
/// Codes: 0 is success; the others are the shared 32-bit codes (GErrorCodes.h). Every entry may give
///   - 0x0300100E: the agent isn't there or doesn't answer in time. A call waits 5 s for its answer; one that
///     changes what is active or what the library holds waits 60 s, but no more than 4 s for an agent that
///     says nothing at all, and ends the connection then. Counts that the agent sends meanwhile begin the 60
///     s anew.
///   - 0x0200200D: the connection broke under the call, or the facade is a dropped one.
///   - 0x0E000000: the agent speaks another version of the protocol.
///   - 0x05000000, 0x04000000: a pointer that must be set is null; another argument has no sense or its text
///     isn't UTF-8. Nothing was sent.
///   - 0x03001009: the arguments don't fit into a message (32 MiB). Nothing was sent.
///   - 0x01004015: the agent's answer has no sense.
///   - 0x06000000, 0x02000000: out of memory; any other exception inside the library.
/// and what the agent answers for a vault or database that it can't use. The rows name further codes. Unless
/// a row says otherwise, outputs are untouched when the result isn't 0.
///
/// Entries marked (not offered) answer 0x08000000, CoreErrorCodes::kNotImplemented, and touch nothing.
///
/// Units: font and workgroup IDs are the agent's unsigned 32-bit database IDs, font ID 0 is no font,
/// workgroup 0 means all workgroups; counts and capacities are numbers of elements, `size` is a number of
/// bytes with the ending zero. Texts are UTF-8. Activation states are the agent's raw values, 0 to 11.
///
/// Ownership: arrays, dictionaries and buffers passed in are the caller's and only used during the call. What
/// the library makes for an `out` argument of type CF...Ref* is the caller's to release. Font records hold
/// strings, and lists of them, by the keys of RecordKeys.h.
///
/// Threads: every entry may be called on any thread, several at once, but not from inside a notification
/// callback: there all but UnregisterForNotifications() give 0x10000000 (not supported). An entry that
/// changes what is active also changes the process's fontconfig configuration, in place and before it
/// returns: call it on the thread on which the process uses fontconfig (FontconfigSystem.h tells why that is
/// safe).
///
/// Nothing throws. A process that forks without exec must not call the library in the child.

#define TALWORTH_EXPORT __attribute__((visibility("default")))

extern "C" {

/// Names the library's side of a session; opaque, never to be dereferenced or freed.
typedef void* FacadeRef;

/// 0 or one of the shared codes.
typedef unsigned int ErrCode;

/// Receives a notification on the library's own thread. `data` lives during the call only; its type goes by
/// the kind (NotificationKind). The result is 0; the library doesn't read it.
typedef int (*NotifyProc)(int kind, void* data);

/// What a notification says, and the type of its data. Kiln sends all of them but 17 and 25.
///
/// In the dictionaries "isLoggedIn" is a boolean, "serverType", "stepIndex" (from 0) and "numSteps" are
/// numbers of 32 bits, "text" is a string for the user. While a receiver is busy, a progress that waits for
/// it is replaced by the next of its kind; a stop is delivered for every run.
enum NotificationKind {
  kNotification_AgentShutdown = 0,                    ///< none; the agent ends in good order
  kNotification_OnlineStateChanged = 1,               ///< bool*: online now
  kNotification_LoggedInStateChanged = 2,             ///< CFDictionaryRef: "isLoggedIn", "serverType"
  kNotification_WorkgroupsChanged = 3,                ///< none
  kNotification_UserPermissionsChanged = 4,           ///< none
  kNotification_FontActivated = 8,                    ///< unsigned int*: font ID
  kNotification_FontDeactivated = 9,                  ///< unsigned int*: font ID
  kNotification_FontMissing = 10,                     ///< unsigned int*: font ID
  kNotification_GoogleWebFontsEnabled = 14,           ///< bool*: enabled now
  kNotification_GoogleReplicationProgress = 15,       ///< CFDictionaryRef: "text", "stepIndex", "numSteps"
  kNotification_GoogleReplicationStopped = 16,        ///< none
  kNotification_PreviewPNGsRendered = 17,             ///< CFDictionaryRef: font ID -> file names
  kNotification_SmartListsChanged = 18,               ///< none; sets changed, too (with 23)
  kNotification_BulkReplicationProgress = 19,         ///< CFDictionaryRef, as 15
  kNotification_BulkReplicationStopped = 20,          ///< none
  kNotification_IncrementalReplicationProgress = 21,  ///< CFDictionaryRef, as 15
  kNotification_IncrementalReplicationStopped = 22,   ///< none
  kNotification_PanelDataChanged = 23,                ///< none
  kNotification_DesignActivationNonCompliant = 24,    ///< unsigned int*: font ID
  kNotification_OfflineDownloadFinished = 25,         ///< none
  kNotification_FontServerReplicationProgress = 27,   ///< CFDictionaryRef, as 15
  kNotification_FontServerReplicationStopped = 28,    ///< none
};

// ----------------------------------------------------------------------------------------------------
// 1 to 11
// ----------------------------------------------------------------------------------------------------

/// 1. Activates fonts for every program of the user and makes them visible to this process before it returns.
/// `reserved` is null; `mode` 1 marks them temporary, 0 lasting, by the user's hand; of the temporary ones
/// `flagA` 1 marks those auto-activated for this process, 0 those by the user's hand; `flagB` is 1 and not
/// read: a font that fails never stops the others. IDs that failed go to `idsA`, IDs that the agent's
/// compliance rules refuse to `idsB`, each cut to its capacity; `countA` and `countB` tell how many were
/// written. The four may be null, and are written whenever the agent answered. 0x0500400C: at least one font
/// was refused; the others are active and visible all the same.
TALWORTH_EXPORT ErrCode ActivateFonts(FacadeRef, unsigned long count, const unsigned int* fontIDs,
                                      const void* reserved, int mode, int flagA, int flagB,
                                      unsigned long capacityA, unsigned long capacityB, unsigned int* idsA,
                                      unsigned int* idsB, unsigned int* countA, unsigned int* countB);
/// 2. Matches a document's font list and activates what matched, in one call however long the list. `path`
/// names the document in the agent's log and may be null; an element of `fonts` is a font record, or a
/// dictionary with "EmbeddedFonts" alone whose records help to choose among candidates; others are passed
/// over. Workgroup -2 means all, like 0. Matched records are appended to `outMatched` in the order of
/// `fonts`, with their states as they were before the call; a font that only belongs to a matched one's
/// family follows it. For a font without a match, or whose matches the agent's compliance rules all refuse
/// (notification 24), a mutable copy of its record is appended to `outProblems`, with "PossibleReplacements"
/// (may be empty). Both arrays must be mutable.
TALWORTH_EXPORT ErrCode ActivateDocumentFontsByPath(FacadeRef, const char* path, CFArrayRef fonts,
                                                    bool nextGenPlugin, bool activateEntireFamily,
                                                    bool pickBestMatch, bool glyphMarkEnabled,
                                                    int workgroupID, CFMutableArrayRef outMatched,
                                                    CFMutableArrayRef outProblems);
/// 3. Puts fonts into every one of the sets; what is in one already stays. 0x08004009: no such set;
/// 0x0A002001: the sets are of different workgroups; 0x0200400A: a font isn't in the sets' workgroup;
/// 0x09002001: a system font. Nothing was changed then.
TALWORTH_EXPORT ErrCode AddFontsToSets(FacadeRef, unsigned long fontCount, const unsigned int* fontIDs,
                                       unsigned long setCount, const unsigned int* setIDs);
/// 4. Names the file, in the folder of the agent's own log, that this process's texts go to from now on, over
/// reconnects. 0x04000000: no name, or a folder in it. 0x02001004: the file can't be opened.
TALWORTH_EXPORT ErrCode BeginLogging(FacadeRef, const char* logFileName);
/// 5. 1 when entry 10 would be granted for all the fonts, else 0.
TALWORTH_EXPORT ErrCode CanExportFonts(FacadeRef, unsigned long count, const unsigned int* fontIDs,
                                       int* outAllowed);
/// 6. Makes a set of fonts of one workgroup and sets `outSetID`. The zeros are 0. Another set may have the
/// name. 0x04000000: a name that is empty, blank or longer than 255 characters of UTF-16; 0x0A004009: no such
/// workgroup, all of them together included; 0x0C004009: System's, which holds no sets; 0x0200400A: a font
/// isn't in the workgroup; 0x09002001: a system font. Nothing was made then.
TALWORTH_EXPORT ErrCode CreateTopLevelSet(FacadeRef, int* outSetID, const char* name, int workgroupID,
                                          int zeroA, int zeroB, unsigned long count,
                                          const unsigned int* fontIDs);
/// 7. Takes back this process's activations of the fonts. `zero` is 0. An ID that this process didn't
/// activate is passed over; a font that others keep active stays visible. What this process was made to see
/// goes before the call returns, what it saw through its font folders a moment later.
TALWORTH_EXPORT ErrCode DeactivateFonts(FacadeRef, unsigned long count, const unsigned int* fontIDs,
                                        int zero);
/// 8. Ends what InitThreadInstance() began. 0 also without an agent.
TALWORTH_EXPORT ErrCode DestroyThreadInstance(FacadeRef);
/// 9. Whether the agent is there to activate fonts for documents; this agent needs no leave for it.
TALWORTH_EXPORT ErrCode EnableDesignActivation(FacadeRef);
/// 10. Copies the fonts' files into a folder, which is made when it isn't there; a path that isn't absolute
/// is below the process's working folder. The zeros are 0. A file is copied once for all its fonts, under its
/// name, with a number behind it where that is taken: nothing is overwritten. 0x06004007: no fonts given;
/// 0x09004007: a font that may not be exported, nothing was copied; 0x03004007, 0x0B004007: the folder can't
/// be made or written to; 0x0E004007: none could be copied; 0x04004007, 0x09001005: some couldn't, the latter
/// because the disk is full.
TALWORTH_EXPORT ErrCode ExportFonts(FacadeRef, unsigned long count, const unsigned int* fontIDs,
                                    const char* destinationPath, int zeroA, int zeroB);
/// 11. Appends the records of the fonts of the font's family group in the workgroups (none, or 0 among them:
/// all), the font itself among them, by ascending ID. `font` names it by "DatabaseID". "ActivationStatus"
/// holds the raw state; the keys derived from it are left to the caller. Uses the current facade.
/// 0x07000000: no such font.
TALWORTH_EXPORT ErrCode FindFontsInSameFamilyForActivation(CFDictionaryRef font,
                                                           const unsigned int* workgroupIDs,
                                                           unsigned long workgroupCount,
                                                           CFMutableArrayRef outFonts);

// ----------------------------------------------------------------------------------------------------
// 12 to 30, most of them names of the agent's columns. Such a getter fills `buffer` with a fixed text and
// needs no agent. 0x05000000: null buffer; 0x0C000000: the text and its ending zero don't fit `size`.
// ----------------------------------------------------------------------------------------------------

TALWORTH_EXPORT ErrCode GetActivationStateColumnID(char* buffer, unsigned long size);  ///< 12
/// 13. The user's workgroups: records with "WorkgroupID", "WorkgroupName", "WorkgroupType". The first flag
/// adds the System workgroup (type 4), the second a library of fonts of an online service when there is one.
/// The array is mutable and the caller's to release.
TALWORTH_EXPORT ErrCode GetAllWorkgroupsForUser(FacadeRef, CFArrayRef* outWorkgroups,
                                                bool includeSystemWorkgroup, bool includeTypekitLibrary);
/// 14. 1 when this library and the agent agree on protocol and database schema, else 0; the status is 0 for
/// both.
TALWORTH_EXPORT ErrCode GetAreSchemaVersionsInSync(FacadeRef, int* outInSync);
/// 15. Adds a receiver of notifications. It stays over reconnects and resets. 0x09000000: it is registered.
TALWORTH_EXPORT ErrCode RegisterForNotifications(FacadeRef, NotifyProc callback);
/// 16. Takes a receiver away. When it returns the callback isn't running and won't run again, unless it is
/// called from a callback. Needs no agent and takes any facade. 0x07000000: it isn't registered.
TALWORTH_EXPORT ErrCode UnregisterForNotifications(FacadeRef, NotifyProc callback);
TALWORTH_EXPORT ErrCode GetCanActivateAcrossWorkgroupsColumnID(char* buffer, unsigned long size);  ///< 17
/// 18. For each ID 1 when this process's own activation of the font stands, else 0. Without an agent it tells
/// what the agent said last.
TALWORTH_EXPORT ErrCode GetClientFontActivationStates(unsigned long count, const unsigned int* fontIDs,
                                                      int* outStates);
TALWORTH_EXPORT ErrCode GetDefaultLibraryName(char* buffer, unsigned long size);       ///< 19
TALWORTH_EXPORT ErrCode GetExportFontsColumnID(char* buffer, unsigned long size);      ///< 20
TALWORTH_EXPORT ErrCode GetFamilyGroupIDColumnID(char* buffer, unsigned long size);    ///< 21
TALWORTH_EXPORT ErrCode GetFamilyGroupNameColumnID(char* buffer, unsigned long size);  ///< 22
TALWORTH_EXPORT ErrCode GetFamilyNameColumnID(char* buffer, unsigned long size);       ///< 23
TALWORTH_EXPORT ErrCode GetFileSizeColumnID(char* buffer, unsigned long size);         ///< 24
TALWORTH_EXPORT ErrCode GetFontFaceIDColumnID(char* buffer, unsigned long size);       ///< 25
/// 26. The record of the font that `query` names by "DatabaseID", looked for in the given workgroups (none,
/// or 0 among them: all; a system font is found in any); other keys of `query` aren't read.
/// "ActivationStatus" holds the raw state; the keys derived from it are left to the caller. `outID` may be
/// null. `outInfo` is the caller's to release. 0x07000000: no such font.
TALWORTH_EXPORT ErrCode GetFontInfoByID(FacadeRef, const unsigned int* workgroupIDs,
                                        unsigned long workgroupCount, CFDictionaryRef query,
                                        unsigned int* outID, CFMutableDictionaryRef* outInfo);
/// 27. For each ID 1 when the font is active now, for whomever, else 0; an unknown ID is 0.
TALWORTH_EXPORT ErrCode GetFontIsActivated(FacadeRef, unsigned long count, const unsigned int* fontIDs,
                                           int* outStates);
TALWORTH_EXPORT ErrCode GetFontLocationColumnID(char* buffer, unsigned long size);       ///< 28
TALWORTH_EXPORT ErrCode GetGlyphMarkChecksumColumnID(char* buffer, unsigned long size);  ///< 29
TALWORTH_EXPORT ErrCode GetFontTypeColumnID(char* buffer, unsigned long size);           ///< 30

// ----------------------------------------------------------------------------------------------------
// 31 to 55
// ----------------------------------------------------------------------------------------------------

/// 31. The folder of the agent's vault, also when the agent couldn't open it. 0x0C000000: doesn't fit.
TALWORTH_EXPORT ErrCode GetFontVaultPath(FacadeRef, unsigned long size, char* buffer);
TALWORTH_EXPORT ErrCode GetFontVersionColumnID(char* buffer, unsigned long size);  ///< 32
/// 33. The IDs of the fonts with exactly this PostScript name in the workgroups, best first. `outCount` is
/// the number written, at most `capacity`. No hit is success with a count of 0.
TALWORTH_EXPORT ErrCode GetFontsByPostscriptName(FacadeRef, const char* name,
                                                 const unsigned int* workgroupIDs,
                                                 unsigned long workgroupCount, unsigned int* outIDs,
                                                 unsigned long capacity, unsigned int* outCount);
/// 34. The same by family name.
TALWORTH_EXPORT ErrCode GetFontsByFamilyName(FacadeRef, const char* name, const unsigned int* workgroupIDs,
                                             unsigned long workgroupCount, unsigned int* outIDs,
                                             unsigned long capacity, unsigned int* outCount);
TALWORTH_EXPORT ErrCode GetFoundryNameColumnID(char* buffer, unsigned long size);  ///< 35
/// 36. 1 when the agent answers. No agent process in this session: status 0 with 0, at once. A process that
/// doesn't answer: 0x0300100E, after at most 1.5 s, or 3 s while it is still starting.
TALWORTH_EXPORT ErrCode GetIsCoreAgentProcessRunning(FacadeRef, int* outRunning);
TALWORTH_EXPORT ErrCode GetIsFontLocalColumnID(char* buffer, unsigned long size);  ///< 37
/// 38. 1 when the user may work: logged in, or the agent stands alone and has no log-in.
TALWORTH_EXPORT ErrCode GetIsLoggedIn(FacadeRef, int* outLoggedIn);
/// 39. 1 when the agent has no server behind it.
TALWORTH_EXPORT ErrCode GetRunningStandalone(FacadeRef, int* outStandalone);
TALWORTH_EXPORT ErrCode GetIsHornbeamFileColumnID(char* buffer, unsigned long size);           ///< 40
TALWORTH_EXPORT ErrCode GetLegacyGlyphMarkChecksumColumnID(char* buffer, unsigned long size);  ///< 41
TALWORTH_EXPORT ErrCode GetLocalPathColumnID(char* buffer, unsigned long size);                ///< 42
/// 43. 1 when the permission named by a column may be used in the workgroup, or across all of them. An
/// unknown column is 0.
TALWORTH_EXPORT ErrCode GetPermission(FacadeRef, bool acrossWorkgroups, const char* columnID, int workgroupID,
                                      int* outAllowed);
/// 44. The facade, made when there is none. Never blocks. Null inside a notification callback and out of
/// memory.
TALWORTH_EXPORT FacadeRef GetPluginFacadeInstance(void);
/// 45. Drops the facade and its connection; the next GetPluginFacadeInstance() makes a new one. Calls under
/// way end with 0x0200200D. Receivers of notifications stay registered.
TALWORTH_EXPORT ErrCode ResetPluginFacadeInstance(void);
TALWORTH_EXPORT ErrCode GetPostscriptNameColumnID(char* buffer, unsigned long size);  ///< 46
TALWORTH_EXPORT ErrCode GetDisplayNameColumnID(char* buffer, unsigned long size);     ///< 47
TALWORTH_EXPORT ErrCode GetScannedFoundryColumnID(char* buffer, unsigned long size);  ///< 48
/// 49. The ID of the workgroup of the system's fonts. 0x07000000: there is none.
TALWORTH_EXPORT ErrCode GetSystemWorkgroupID(FacadeRef, unsigned int* outID);
TALWORTH_EXPORT ErrCode GetWorkgroupIDColumnID(char* buffer, unsigned long size);    ///< 50
TALWORTH_EXPORT ErrCode GetWorkgroupNameColumnID(char* buffer, unsigned long size);  ///< 51
TALWORTH_EXPORT ErrCode GetWorkgroupTypeColumnID(char* buffer, unsigned long size);  ///< 52
/// 53. Sets up this side: which host this is (0 other, 2, 3, 4, 5, 7), told to the agent when connecting.
/// `zero` is 0. An agent that can't be reached is no failure here: GetIsCoreAgentProcessRunning() is what
/// tells. 0x0E000000, 0x02001013: agent and library don't agree on protocol or database schema.
TALWORTH_EXPORT ErrCode InitAppInstance(FacadeRef, int hostType, int zero);
/// 54. Begins work with the agent. 0x02002005: no agent process; 0x03002005: it runs but doesn't answer, or
/// speaks another protocol; 0x01002008: the vault can't be used; 0x02002008: another agent holds the vault.
TALWORTH_EXPORT ErrCode InitThreadInstance(FacadeRef);
/// 55. 1 for 0 and -2, the two names of all workgroups together, else 0. Needs no agent and takes any facade.
TALWORTH_EXPORT ErrCode IsAllWorkgroups(FacadeRef, int workgroupID, int* outIsAll);

// ----------------------------------------------------------------------------------------------------
// 56 to 84
// ----------------------------------------------------------------------------------------------------

/// 56. Appends the text as it is to the file of BeginLogging(), without one to the agent's own log.
TALWORTH_EXPORT ErrCode Log(FacadeRef, const char* text);
/// 57. Makes a folder and those above it. 0 also when it was there. Needs no agent. 0x05001005: bad path;
/// 0x04001005: a file is in the way; 0x03004007: the system refused.
TALWORTH_EXPORT ErrCode OSCreateDirectory(FacadeRef, const char* path);
/// 58. 0 when the path is a folder; 0x02001005 when it isn't. Needs no agent.
TALWORTH_EXPORT ErrCode OSDoesDirectoryExist(FacadeRef, const char* path);
/// 59. Activates fonts, marked as auto-activated, for this process alone. `zero` is 0. 0x0500400C as entry 1,
/// the others are active; 0x0100200A: this process can't see one of them. What it can't see was given back.
TALWORTH_EXPORT ErrCode PreviewActivateFonts(FacadeRef, unsigned long count, const unsigned int* fontIDs,
                                             int zero);
/// 60. Appends the records of the Google library's fonts, as entry 26 gives them; none while it is off.
TALWORTH_EXPORT ErrCode GetGoogleFonts(FacadeRef, CFMutableArrayRef outFonts);
/// 61. 1 while the agent takes fonts over from anywhere (notifications 15, 19, 21, 27), else 0.
TALWORTH_EXPORT ErrCode GetIsReplicationRunning(FacadeRef, int* outRunning);
/// 62. What it takes over: 0 all of a server's, or a re-scan (19); 1 what the user adds (21); 2 Google fonts
/// (15); 3 what has changed at the server (27); of several the lowest; -1 nothing.
TALWORTH_EXPORT ErrCode GetCurrentReplicationMode(FacadeRef, int* outMode);
/// 63. 1 when the library of Google fonts is on, else 0.
TALWORTH_EXPORT ErrCode GetIsGoogleWebFontsEnabled(FacadeRef, int* outEnabled);
/// 64. Switches it on or off; on, it takes its fonts from the folder of the last time, and they come after
/// the call has returned. 0x02001005: that folder has gone; 0x04000000: there never was one. Nothing was
/// changed then.
TALWORTH_EXPORT ErrCode SetGoogleWebFontsEnabled(FacadeRef, int enabled);
TALWORTH_EXPORT ErrCode GetRenderedPNGsDirectory(FacadeRef, char* buffer,
                                                 unsigned long size);  ///< 65 (not offered)
/// 66. Draws previews of font names; each comes as notification 17 (not offered).
TALWORTH_EXPORT ErrCode RenderFontNamePreviewPNGs(FacadeRef, unsigned long highPriorityCount,
                                                  const unsigned int* highPriorityIDs, unsigned long count,
                                                  const unsigned int* fontIDs, unsigned int smartListID,
                                                  int c14, int c400, int c30, int c1);
TALWORTH_EXPORT ErrCode RenameSmartList(FacadeRef, unsigned int smartListID,
                                        const char* name);                     ///< 67 (not offered)
TALWORTH_EXPORT ErrCode DeleteSmartList(FacadeRef, unsigned int smartListID);  ///< 68 (not offered)
TALWORTH_EXPORT ErrCode GetSmartList(FacadeRef, unsigned int smartListID,
                                     CFMutableDictionaryRef outList);  ///< 69 (not offered)
TALWORTH_EXPORT ErrCode GetPanelSmartListTree(FacadeRef, unsigned int smartListID,
                                              CFMutableStringRef outTree);  ///< 70 (not offered)
/// 71. The IDs of the fonts that a query of workgroups, sets and smart sets finds (not offered).
TALWORTH_EXPORT ErrCode QueryForSmartListFonts(FacadeRef, unsigned long workgroupCount,
                                               const unsigned int* workgroupIDs, unsigned long setCount,
                                               const unsigned int* setIDs, unsigned long smartSetCount,
                                               const unsigned int* smartSetIDs, CFMutableArrayRef outFontIDs);
TALWORTH_EXPORT ErrCode GetAllSmartLists(FacadeRef, CFMutableArrayRef outLists);  ///< 72 (not offered)
/// 73. Makes a smart list of a query (not offered).
TALWORTH_EXPORT ErrCode CreateSmartList(FacadeRef, const char* name, unsigned long workgroupCount,
                                        const unsigned int* workgroupIDs, unsigned long setCount,
                                        const unsigned int* setIDs, unsigned long smartSetCount,
                                        const unsigned int* smartSetIDs, unsigned int* outSmartListID);
/// 74. Gives a smart list another query (not offered).
TALWORTH_EXPORT ErrCode SetSmartListQuery(FacadeRef, unsigned int smartListID, unsigned long workgroupCount,
                                          const unsigned int* workgroupIDs, unsigned long setCount,
                                          const unsigned int* setIDs, unsigned long smartSetCount,
                                          const unsigned int* smartSetIDs);
TALWORTH_EXPORT ErrCode GetSmartListFonts(FacadeRef, unsigned int smartListID,
                                          CFMutableArrayRef outFonts);  ///< 75 (not offered)
/// 76. Ends the library's work in this process: its threads have ended, no callback runs any more (they stay
/// registered), the process's own fonts are taken out again. Takes any facade. Always 0. A later
/// GetPluginFacadeInstance() begins anew.
TALWORTH_EXPORT ErrCode CleanUpOnShutdown(FacadeRef);
/// 77. For each ID the ID of another font of the same PostScript name that is active for all programs, the
/// lowest of several, else 0; an unknown ID is 0.
TALWORTH_EXPORT ErrCode GetFontConflicts(FacadeRef, unsigned long count, const unsigned int* fontIDs,
                                         unsigned int* outConflicts);
TALWORTH_EXPORT ErrCode TrackFontPanelClick(FacadeRef, unsigned int fontID,
                                            const char* version);  ///< 78 (not offered)
/// 79. A flag, not a code: 1 when there is a folder of Google fonts that can be read, whether they are on or
/// off; 0 otherwise and for whatever stands in the way of asking.
TALWORTH_EXPORT int CanAccessGoogleFonts(FacadeRef);
/// 80. Tells the agent which fonts a document uses, in one call. `fonts` may be null (none);
/// `hostDisplayName` and `hostCategory` may be null (empty).
TALWORTH_EXPORT ErrCode SaveDocumentFonts(FacadeRef, const char* path, const char* hostDisplayName,
                                          const char* hostCategory, CFArrayRef fonts);
TALWORTH_EXPORT ErrCode GetFontUsage(FacadeRef, const char* path,
                                     CFMutableArrayRef outFonts);  ///< 81 (not offered)
TALWORTH_EXPORT ErrCode GetAdobeXMPData(FacadeRef, const char* path,
                                        CFMutableArrayRef outFonts);  ///< 82 (not offered)
TALWORTH_EXPORT ErrCode GetGlyphMarkXMPData(FacadeRef, const char* path,
                                            CFMutableArrayRef outFonts);                ///< 83 (not offered)
TALWORTH_EXPORT ErrCode WriteFontUsage(FacadeRef, const char* path, CFArrayRef fonts);  ///< 84 (not offered)

}  // extern "C"
