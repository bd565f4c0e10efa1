#pragma once

#include "client/PluginInterface.h"

/// What the font library's own programs ask of the agent beyond the entries of PluginInterface.h: adding
/// fonts, listing them, the agent's condition. They live in the same framework, are bound by name in the same
/// way, and follow the same rules for facade, codes and threads.

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
/// \param paths  Strings. Not owned.
/// \param progress  May be null. Must not throw, and may call no entry.
/// \param outResults  Receives one dictionary a file, in the agent's order: "path" (string); "status", one of
///     "added", "known", "failed"; "code" (decimal text, 0 unless failed); "message" (string, a sentence for
///     the user when failed, else empty); "fonts" (array of the PostScript names). Must be mutable.
/// \return 0 when the agent dealt with the list, however many files failed. The call takes as long as the
///     agent needs while it reports progress; 5 s of silence end it with 0x0300100E. What was added by then
///     stays in the library, and nothing is appended to outResults.
TALWORTH_EXPORT ErrCode KilnLibraryAddPaths(FacadeRef, CFArrayRef paths, KilnProgressProc progress,
                                            void* context, CFMutableArrayRef outResults);

/// Appends a font record for every font of the library (RecordKeys.h), ordered by family and PostScript name,
/// with "Style" beside the record's keys. System fonts aren't listed.
TALWORTH_EXPORT ErrCode KilnLibraryListFonts(FacadeRef, CFMutableArrayRef outFonts);

/// Sets what the agent says of itself, all as strings: "version", "pid", "vaultPath", "vaultStatus" (code, 0
/// when the vault is in use by this agent), "fontCount", "systemFontCount", "activeFontCount", "clientCount",
/// "requestCount" (of all clients since the agent started, pings and questions for the status left out).
TALWORTH_EXPORT ErrCode KilnLibraryStatus(FacadeRef, CFMutableDictionaryRef outStatus);

}  // extern "C"
