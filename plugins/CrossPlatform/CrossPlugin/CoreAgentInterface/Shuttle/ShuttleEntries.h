// The entries of the agent's client library, in the order of the table: the one list from which the pointers,
// the binding, the self-check and the calls of ShuttleLoader are made. It is included several times, so it
// has no include guard. The includer defines what it needs of
//
//   AGENT_ENTRY(name, parameters...)           ErrCode name(FacadeRef, parameters...)
//   FLAG_ENTRY(name)                           int name(FacadeRef); the result is a flag, not a code
//   COLUMN_ENTRY(name)                         ErrCode name(char* buffer, unsigned long size), the agent's
//                                              internal name of a column, or another of its fixed texts
//   PLAIN_ENTRY(result, name, parameters...)   result name(parameters...), without a facade
//
// Parameters named zero, mode, flag or c and a number are constants that the library wants; what they mean is
// its own affair, and the callers pass them as agreed. A `capacity` is the room in elements of the array
// behind it; a count that comes back may be larger. What is handed out through a CF..Ref* is the caller's to
// release; mutable containers are the caller's from the start and are filled.
//
// clang-format off
#ifndef AGENT_ENTRY
#error "Define AGENT_ENTRY, FLAG_ENTRY, COLUMN_ENTRY and PLAIN_ENTRY before including ShuttleEntries.h"
#endif

// 1
AGENT_ENTRY(ActivateFonts, unsigned long count, const unsigned int* fontIDs, const void* reserved, int mode,
            int flagA, int flagB, unsigned long capacityA, unsigned long capacityB, unsigned int* idsA,
            unsigned int* idsB, unsigned int* countA, unsigned int* countB)
AGENT_ENTRY(ActivateDocumentFontsByPath, const char* path, CFArrayRef fonts, bool nextGenPlugin,
            bool activateEntireFamily, bool pickBestMatch, bool glyphMarkEnabled, int workgroupID,
            CFMutableArrayRef outMatched, CFMutableArrayRef outProblems)
AGENT_ENTRY(AddFontsToSets, unsigned long fontCount, const unsigned int* fontIDs, unsigned long setCount,
            const unsigned int* setIDs)
AGENT_ENTRY(BeginLogging, const char* logFileName)
AGENT_ENTRY(CanExportFonts, unsigned long count, const unsigned int* fontIDs, int* outAllowed)
AGENT_ENTRY(CreateTopLevelSet, int* outSetID, const char* name, int workgroupID, int zeroA, int zeroB,
            unsigned long count, const unsigned int* fontIDs)
AGENT_ENTRY(DeactivateFonts, unsigned long count, const unsigned int* fontIDs, int zero)
AGENT_ENTRY(DestroyThreadInstance)
AGENT_ENTRY(EnableDesignActivation)
AGENT_ENTRY(ExportFonts, unsigned long count, const unsigned int* fontIDs, const char* destinationPath,
            int zeroA, int zeroB)
// 11
PLAIN_ENTRY(ErrCode, FindFontsInSameFamilyForActivation, CFDictionaryRef font,
            const unsigned int* workgroupIDs, unsigned long workgroupCount, CFMutableArrayRef outFonts)
COLUMN_ENTRY(GetActivationStateColumnID)
AGENT_ENTRY(GetAllWorkgroupsForUser, CFArrayRef* outWorkgroups, bool includeSystemWorkgroup,
            bool includeTypekitLibrary)
AGENT_ENTRY(GetAreSchemaVersionsInSync, int* outInSync)
AGENT_ENTRY(RegisterForNotifications, NotifyProc callback)
AGENT_ENTRY(UnregisterForNotifications, NotifyProc callback)
COLUMN_ENTRY(GetCanActivateAcrossWorkgroupsColumnID)
PLAIN_ENTRY(ErrCode, GetClientFontActivationStates, unsigned long count, const unsigned int* fontIDs,
            int* outStates)
COLUMN_ENTRY(GetDefaultLibraryName)
COLUMN_ENTRY(GetExportFontsColumnID)
// 21
COLUMN_ENTRY(GetFamilyGroupIDColumnID)
COLUMN_ENTRY(GetFamilyGroupNameColumnID)
COLUMN_ENTRY(GetFamilyNameColumnID)
COLUMN_ENTRY(GetFileSizeColumnID)
COLUMN_ENTRY(GetFontFaceIDColumnID)
AGENT_ENTRY(GetFontInfoByID, const unsigned int* workgroupIDs, unsigned long workgroupCount,
            CFDictionaryRef query, unsigned int* outID, CFMutableDictionaryRef* outInfo)
AGENT_ENTRY(GetFontIsActivated, unsigned long count, const unsigned int* fontIDs, int* outStates)
COLUMN_ENTRY(GetFontLocationColumnID)
COLUMN_ENTRY(GetGlyphMarkChecksumColumnID)
COLUMN_ENTRY(GetFontTypeColumnID)
// 31
AGENT_ENTRY(GetFontVaultPath, unsigned long size, char* buffer)
COLUMN_ENTRY(GetFontVersionColumnID)
AGENT_ENTRY(GetFontsByPostscriptName, const char* name, const unsigned int* workgroupIDs,
            unsigned long workgroupCount, unsigned int* outIDs, unsigned long capacity,
            unsigned int* outCount)
AGENT_ENTRY(GetFontsByFamilyName, const char* name, const unsigned int* workgroupIDs,
            unsigned long workgroupCount, unsigned int* outIDs, unsigned long capacity,
            unsigned int* outCount)
COLUMN_ENTRY(GetFoundryNameColumnID)
AGENT_ENTRY(GetIsCoreAgentProcessRunning, int* outRunning)
COLUMN_ENTRY(GetIsFontLocalColumnID)
AGENT_ENTRY(GetIsLoggedIn, int* outLoggedIn)
AGENT_ENTRY(GetRunningStandalone, int* outStandalone)
COLUMN_ENTRY(GetIsHornbeamFileColumnID)
// 41
COLUMN_ENTRY(GetLegacyGlyphMarkChecksumColumnID)
COLUMN_ENTRY(GetLocalPathColumnID)
AGENT_ENTRY(GetPermission, bool acrossWorkgroups, const char* columnID, int workgroupID, int* outAllowed)
PLAIN_ENTRY(FacadeRef, GetPluginFacadeInstance)
PLAIN_ENTRY(ErrCode, ResetPluginFacadeInstance)
COLUMN_ENTRY(GetPostscriptNameColumnID)
COLUMN_ENTRY(GetDisplayNameColumnID)
COLUMN_ENTRY(GetScannedFoundryColumnID)
AGENT_ENTRY(GetSystemWorkgroupID, unsigned int* outID)
COLUMN_ENTRY(GetWorkgroupIDColumnID)
// 51
COLUMN_ENTRY(GetWorkgroupNameColumnID)
COLUMN_ENTRY(GetWorkgroupTypeColumnID)
AGENT_ENTRY(InitAppInstance, int hostType, int zero)
AGENT_ENTRY(InitThreadInstance)
AGENT_ENTRY(IsAllWorkgroups, int workgroupID, int* outIsAll)
AGENT_ENTRY(Log, const char* text)
AGENT_ENTRY(OSCreateDirectory, const char* path)
AGENT_ENTRY(OSDoesDirectoryExist, const char* path)
AGENT_ENTRY(PreviewActivateFonts, unsigned long count, const unsigned int* fontIDs, int zero)
AGENT_ENTRY(GetGoogleFonts, CFMutableArrayRef outFonts)
// 61
AGENT_ENTRY(GetIsReplicationRunning, int* outRunning)
AGENT_ENTRY(GetCurrentReplicationMode, int* outMode)
AGENT_ENTRY(GetIsGoogleWebFontsEnabled, int* outEnabled)
AGENT_ENTRY(SetGoogleWebFontsEnabled, int enabled)
AGENT_ENTRY(GetRenderedPNGsDirectory, char* buffer, unsigned long size)
AGENT_ENTRY(RenderFontNamePreviewPNGs, unsigned long highPriorityCount, const unsigned int* highPriorityIDs,
            unsigned long count, const unsigned int* fontIDs, unsigned int smartListID, int c14, int c400,
            int c30, int c1)
AGENT_ENTRY(RenameSmartList, unsigned int smartListID, const char* name)
AGENT_ENTRY(DeleteSmartList, unsigned int smartListID)
AGENT_ENTRY(GetSmartList, unsigned int smartListID, CFMutableDictionaryRef outList)
AGENT_ENTRY(GetPanelSmartListTree, unsigned int smartListID, CFMutableStringRef outTree)
// 71
AGENT_ENTRY(QueryForSmartListFonts, unsigned long workgroupCount, const unsigned int* workgroupIDs,
            unsigned long setCount, const unsigned int* setIDs, unsigned long smartSetCount,
            const unsigned int* smartSetIDs, CFMutableArrayRef outFontIDs)
AGENT_ENTRY(GetAllSmartLists, CFMutableArrayRef outLists)
AGENT_ENTRY(CreateSmartList, const char* name, unsigned long workgroupCount, const unsigned int* workgroupIDs,
            unsigned long setCount, const unsigned int* setIDs, unsigned long smartSetCount,
            const unsigned int* smartSetIDs, unsigned int* outSmartListID)
AGENT_ENTRY(SetSmartListQuery, unsigned int smartListID, unsigned long workgroupCount,
            const unsigned int* workgroupIDs, unsigned long setCount, const unsigned int* setIDs,
            unsigned long smartSetCount, const unsigned int* smartSetIDs)
AGENT_ENTRY(GetSmartListFonts, unsigned int smartListID, CFMutableArrayRef outFonts)
AGENT_ENTRY(CleanUpOnShutdown)
AGENT_ENTRY(GetFontConflicts, unsigned long count, const unsigned int* fontIDs, unsigned int* outConflicts)
AGENT_ENTRY(TrackFontPanelClick, unsigned int fontID, const char* version)
FLAG_ENTRY(CanAccessGoogleFonts)
AGENT_ENTRY(SaveDocumentFonts, const char* path, const char* hostDisplayName, const char* hostCategory,
            CFArrayRef fonts)
// 81
AGENT_ENTRY(GetFontUsage, const char* path, CFMutableArrayRef outFonts)
AGENT_ENTRY(GetAdobeXMPData, const char* path, CFMutableArrayRef outFonts)
AGENT_ENTRY(GetGlyphMarkXMPData, const char* path, CFMutableArrayRef outFonts)
AGENT_ENTRY(WriteFontUsage, const char* path, CFArrayRef fonts)

// clang-format on
#undef AGENT_ENTRY
#undef FLAG_ENTRY
#undef COLUMN_ENTRY
#undef PLAIN_ENTRY
