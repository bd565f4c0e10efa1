// The plug-in's log at the agent, and folders of the file system.

#include <filesystem>
#include <string>
#include <system_error>

#include "GFileSystem.h"
#include "client/Entries/EntryGuard.h"
#include "client/PluginInterface.h"

using kiln::wire::ClientMessage;

ErrCode BeginLogging(FacadeRef facade, const char* logFileName) {
  return EntryGuard::RunInSession(facade, [&](Session& session) -> ErrCode {
    ClientMessage request;
    std::string& name = *request.mutable_begin_logging()->mutable_file_name();
    if (const ErrCode code = EntryGuard::ReadText(logFileName, name)) return code;
    Connection::Incoming reply;
    if (const ErrCode code = session.Call(request, reply)) return code;
    session.SetLogFile(name);
    return CoreErrorCodes::kSuccess;
  });
}

ErrCode Log(FacadeRef facade, const char* text) {
  return EntryGuard::RunInSession(facade, [&](Session& session) -> ErrCode {
    ClientMessage request;
    if (const ErrCode code = EntryGuard::ReadText(text, *request.mutable_log()->mutable_text())) return code;
    Connection::Incoming reply;
    return session.Call(request, reply);
  });
}

ErrCode OSCreateDirectory(FacadeRef, const char* path) {
  return EntryGuard::Run([&]() -> ErrCode {
    if (path == nullptr) return CoreErrorCodes::kNullPointer;
    if (*path == '\0') return GFileSystem::kInvalidPath;
    std::error_code error;
    if (std::filesystem::create_directories(path, error) || std::filesystem::is_directory(path)) {
      return CoreErrorCodes::kSuccess;
    }
    return error == std::errc::not_a_directory || std::filesystem::exists(path, error)
               ? GFileSystem::kFileOrDirectoryAlreadyExists
               : GOspreyExportFonts::kCouldNotCreateFolder;
  });
}

ErrCode OSDoesDirectoryExist(FacadeRef, const char* path) {
  return EntryGuard::Run([&]() -> ErrCode {
    if (path == nullptr) return CoreErrorCodes::kNullPointer;
    std::error_code error;
    return std::filesystem::is_directory(path, error) ? CoreErrorCodes::kSuccess
                                                      : GFileSystem::kDirectoryNotFound;
  });
}
