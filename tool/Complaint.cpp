#include "Complaint.h"

#include <cstdio>

#include "GErrors.h"
#include "Utf8Text.h"

namespace {

struct Meaning {
  unsigned int code;
  const char* sentence;
};

// Of the codes that a user can do something about; the others have their names.
constexpr Meaning kMeanings[] = {
    {GIPCClient::kServiceUnavailable, "Kiln runs, but doesn't answer"},
    {GAgentIF::kShutdown, "Kiln has ended in between"},
    {CoreErrorCodes::kVersionMismatch, "the Kiln that runs is of another version"},
    {CoreErrorCodes::kNotInitialized, "the Kiln that runs is of another version"},
    {GIPCReceiver::kMessageTooLarge, "that is too much at once"},
    {GSqliteDatabase::kDatabaseFull, "the disk is full"},
    {GSqliteDatabase::kDatabaseOpenFailed, "the library's database can't be used; Kiln.log says why"},
    {GSqliteDatabase::kDatabaseCorrupted, "the library's database can't be used; Kiln.log says why"},
    {CoreErrorCodes::kDatabaseError, "the library's database can't be used; Kiln.log says why"},
    {GFontActivationManager::kOSFileSystemError, "the library's files can't be written; Kiln.log says why"},
    {GSqliteDatabaseConnMgr::kSchemaVersionMismatch,
     "the library's database was made by a newer Kiln, and is left as it is"},
    {GOspreySdk::kInvalidVault, "the library's database or vault can't be used; Kiln.log says why"},
    {GOspreySdk::kVaultInUse, "another Kiln uses this library"},
    {CoreErrorCodes::kInvalidParam, "a name or path is empty, too long or not UTF-8 text"},
    {CoreErrorCodes::kItemAlreadyExists, "there is one of that name"},
    {GFileSystemCodes::kDirectoryNotFound, "there is no such folder"},
    {GFileSystemCodes::kInvalidPath, "a path can't be used"},
    {GFileSystemCodes::kDiskFull, "the disk is full"},
    {GOspreySetManager::kWorkgroupNotFound, "there is no such library"},
    {GOspreyWorkgroupManager::kRestrictedWorkgroup, "this library isn't yours to change"},
    {GOspreyWorkgroupManager::kCannotAddFontsToUnsupportedWorkgroup, "this library isn't yours to add to"},
    {GOspreyWorkgroupManager::kFromRestrictedWorkgroup,
     "a font's library doesn't allow copying it out, nor into another library"},
    {GOspreyDataFacade::kCannotAddSystemFontsToWorkgroup, "fonts of the system can't be put into a library"},
    {GOspreySetManager::kSetNotFound, "there is no such set; hornbeam library sets lists them"},
    {GOspreySetManager::kCannotAddSetsToSystemWorkgroup, "there can't be sets of the system's fonts"},
    {GOspreyDataFacade::kCannotAddSystemFontsToSet, "fonts of the system can't be in a set"},
    {GOspreyFontManager::kFontNotInSourceContainer, "a font isn't in the set's library"},
    {GOspreyExportFonts::kNotGrantedPermissionToExportFonts,
     "the library's administrator doesn't allow copying a font out of it"},
    {GOspreyExportFonts::kCouldNotCreateFolder, "the folder could not be made"},
    {GOspreyExportFonts::kCannotWriteToDestinationFolder, "the folder can't be written to"},
    {GOspreyExportFonts::kNoAvailableFontsToExport, "the fonts' files are missing"},
    {GOspreyExportFonts::kCouldNotCopyFile, "a file could not be copied"},
    {GFontServerProxy::kFailedToConnect, "the folder can't be read, or holds no server.conf"},
    {GFontServerProxy::kSignInFailed, "the server doesn't know the user"},
    {GOspreyServerFacade::kAlreadyLoggedIn, "somebody is logged in; hornbeam library logout first"},
    {GOspreyServerFacade::kNotLoggedIn, "nobody is logged in"},
};

}  // namespace

void Complain(const std::string& text) {
  std::fprintf(stderr, "hornbeam: %s\n", PrintableText(text).c_str());
}

void ComplainOfCode(const std::string& text, unsigned int code) {
  for (const Meaning& meaning : kMeanings) {
    if (meaning.code == code) return Complain(text + ": " + meaning.sentence);
  }
  char number[sizeof(" (0x00000000)")];
  std::snprintf(number, sizeof(number), " (0x%08X)", code);
  Complain(text + ": " + GetNameForErrorCode(code) + number);
}
