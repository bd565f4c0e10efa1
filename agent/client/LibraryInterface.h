#pragma once

#include "client/PluginInterface.h"

/// What the font library's own programs ask of the agent beyond the entries of PluginInterface.h: adding
/// fonts, listing them, its workgroups and sets, what feeds them, the agent's condition. They live in the
/// same framework, are bound by name in the same way, and follow the same rules for facade, codes and
/// threads.

extern "C" {

/// Hears how far an import has come, on the calling thread, before the call returns.
///
/// \param done, total  Files dealt with and files found. `total` grows while folders are still being read.
/// \param path  The file just dealt with, UTF-8, during the call only. May be empty.
/// \param context  As given to the call.
/// \return Nothing is read from it.
typedef void (*KilnProgressProc)(unsigned long done, unsigned long total, const char* path, void* context);

/// Adds font files to the library. A folder stands for the font files in it and below it.
///
/// \param workgroupID  The library that they go to; 0 is the first font library.
/// \param paths  Strings. Not owned.
/// \param progress  May be null. Must not throw, and may call no entry.
/// \param outResults  Receives one dictionary a file, in the agent's order: "path" (string); "status", one of
///     "added", "known", "failed"; "code" (decimal text, 0 unless failed); "message" (string, a sentence for
///     the user when failed, else empty); "fonts" (array of the PostScript names). Must be mutable.
/// \return 0 when the agent dealt with the list, however many files failed. The call takes as long as the
///     agent needs while it reports progress; 5 s of silence end it with 0x0300100E. What was added by then
///     stays in the library, and nothing is appended to outResults.
TALWORTH_EXPORT ErrCode KilnLibraryAddPaths(FacadeRef, unsigned int workgroupID, CFArrayRef paths,
                                            KilnProgressProc progress, void* context,
                                            CFMutableArrayRef outResults);

/// Appends a font record for every font of the library (RecordKeys.h), ordered by family and PostScript name,
/// with "Style" beside the record's keys. System fonts aren't listed.
TALWORTH_EXPORT ErrCode KilnLibraryListFonts(FacadeRef, CFMutableArrayRef outFonts);

/// Takes fonts away from everybody, as the user's wish, and not only what this process activated (entry 7).
/// What isn't active is passed over. System fonts stay.
TALWORTH_EXPORT ErrCode KilnLibraryDeactivateFonts(FacadeRef, unsigned long count,
                                                   const unsigned int* fontIDs);

/// Makes a library of the user. 0x04000000: the name is empty, too long or not UTF-8; 0x09000000: there is
/// one of that name.
TALWORTH_EXPORT ErrCode KilnLibraryCreateWorkgroup(FacadeRef, const char* name, unsigned int* outID);
/// The codes of KilnLibraryCreateWorkgroup(), and 0x0A004009: no such workgroup; 0x0700400B: it isn't the
/// user's to change.
TALWORTH_EXPORT ErrCode KilnLibraryRenameWorkgroup(FacadeRef, unsigned int workgroupID, const char* name);
/// Fonts that no other workgroup holds go over to the first font library.
TALWORTH_EXPORT ErrCode KilnLibraryDeleteWorkgroup(FacadeRef, unsigned int workgroupID);
/// Puts fonts into a library of the user, or takes them out. A font that would be in none any more is deleted
/// from the vault, unless it is active: then it stays, and its ID (decimal text) is appended to `outKept`,
/// which may be null. 0x08002001: a system font; 0x0800400B: a font that none of its workgroups allows to be
/// copied out of the library. Nothing has changed then.
TALWORTH_EXPORT ErrCode KilnLibraryChangeWorkgroupFonts(FacadeRef, unsigned int workgroupID,
                                                        unsigned long count, const unsigned int* fontIDs,
                                                        bool remove, CFMutableArrayRef outKept);
/// Appends a dictionary for every workgroup that isn't hidden, System among them: the keys of entry 13, and
/// "FontCount" (decimal text).
TALWORTH_EXPORT ErrCode KilnLibraryListWorkgroups(FacadeRef, CFMutableArrayRef outWorkgroups);
/// Marks fonts of a workgroup as not to be activated, or takes the mark back. What is active stays so.
/// 0x0A004009: no such workgroup; 0x0700400B: a server's, whose administrator marks.
TALWORTH_EXPORT ErrCode KilnLibrarySetRefused(FacadeRef, unsigned int workgroupID, unsigned long count,
                                              const unsigned int* fontIDs, bool refused);

/// Appends a dictionary for every set: "SetID", "SetName", "WorkgroupID", "WorkgroupName" (texts), "FontIDs"
/// (array of decimal texts).
TALWORTH_EXPORT ErrCode KilnLibraryListSets(FacadeRef, CFMutableArrayRef outSets);
/// 0x08004009: no such set. The fonts stay.
TALWORTH_EXPORT ErrCode KilnLibraryDeleteSet(FacadeRef, unsigned int setID);

/// As entry 10, and tells of each font: appends, in the order of the IDs, "DatabaseID", "path" (of the copy),
/// "code" (decimal text, 0 when it was copied) and "message" (a sentence for the user when it wasn't).
/// `progress` counts files and gets an empty path; may be null. `outResults` is filled whenever the agent
/// dealt with the list, whatever the code.
TALWORTH_EXPORT ErrCode KilnLibraryExportFonts(FacadeRef, unsigned long count, const unsigned int* fontIDs,
                                               const char* destinationPath, KilnProgressProc progress,
                                               void* context, CFMutableArrayRef outResults);

/// Logs in to a font server: a folder with a "server.conf". `user` may be null: the name of the agent's own
/// user. 0x01004018: no such folder, or no server; 0x0C004018: the server doesn't know the user; 0x02002004:
/// logged in already.
TALWORTH_EXPORT ErrCode KilnLibraryLogIn(FacadeRef, const char* server, const char* user);
/// Logs out; `leave` makes the agent stand alone again. 0x01002004: not logged in.
TALWORTH_EXPORT ErrCode KilnLibraryLogOut(FacadeRef, bool leave);
/// Sets "standalone", "loggedIn", "online" ("1" or "0"), "server", "user" (texts, empty when there is none)
/// and "serverType" (decimal text).
TALWORTH_EXPORT ErrCode KilnLibraryServerState(FacadeRef, CFMutableDictionaryRef outState);

/// As entry 64, naming the folder that the Google library takes its fonts from; null or empty is the one of
/// the last time. 0x02001005: no such folder; 0x04000000: none was ever named.
TALWORTH_EXPORT ErrCode KilnLibrarySetGoogle(FacadeRef, bool enabled, const char* folder);
/// Sets "enabled", "accessible" ("1" or "0") and "folder".
TALWORTH_EXPORT ErrCode KilnLibraryGoogleState(FacadeRef, CFMutableDictionaryRef outState);

/// Looks whether the files of the vault are there, and reads the folders of the Google library and of the
/// server anew. Sets "filesChecked" (decimal text), "missingIDs" and "unusableIDs" (arrays of decimal texts:
/// the file has gone, or isn't what was put into the vault). `progress` as in KilnLibraryExportFonts().
TALWORTH_EXPORT ErrCode KilnLibraryRescan(FacadeRef, KilnProgressProc progress, void* context,
                                          CFMutableDictionaryRef outReport);

/// Sets what the agent says of itself, all as strings: "version", "pid", "vaultPath", "vaultStatus" (code, 0
/// when the vault is in use by this agent), "fontCount", "systemFontCount", "activeFontCount", "clientCount",
/// "requestCount" (of all clients since the agent started, pings and questions for the status left out).
TALWORTH_EXPORT ErrCode KilnLibraryStatus(FacadeRef, CFMutableDictionaryRef outStatus);

}  // extern "C"
