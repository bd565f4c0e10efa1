// What the font library's own programs ask of the agent.

#include <algorithm>
#include <filesystem>
#include <string>
#include <tuple>
#include <vector>

#include "GErrors.h"
#include "GFileSystem.h"
#include "Memory/CFVector.h"
#include "XCFUtils.h"
#include "client/Entries/EntryGuard.h"
#include "client/FontListing.h"
#include "client/FontRecords.h"
#include "client/LibraryInterface.h"
#include "client/RecordKeys.h"

using kiln::wire::ClientMessage;
using kiln::wire::ServerMessage;

namespace {

std::string SentenceFor(ErrCode code) {
  switch (code) {
    case CoreErrorCodes::kSuccess:
      return {};
    case GFontToolResults::kNotAFontFile:
      return "It is not a font file.";
    case GFontToolResults::kCorrupt:
      return "The font is damaged.";
    case GFontToolConnector::kFontToolCrashed:
      return "The font is damaged: reading it fails.";
    case GFileSystem::kFileNotFound:
      return "There is no such file, or it can't be read.";
    case GFileSystem::kDiskFull:
      return "The disk is full.";
    case GOspreySetManager::kWorkgroupNotFound:
      return "The library has gone.";
    case GFileSystem::kInvalidPath:
      return "The path can't be used.";
    default:
      return "It can't be added (" + GetNameForErrorCode(code) + ").";
  }
}

RetainPtr<CFMutableDictionaryRef> ResultRecord(const kiln::wire::AddedFile& file) {
  auto record = MakeDictionary();
  const char* status = file.error() != 0 ? "failed" : file.already_known() ? "known" : "added";
  XCFUtils::PutStringIntoDict(record.get(), CFSTR("path"), file.path());
  XCFUtils::PutStringIntoDict(record.get(), CFSTR("status"), status);
  XCFUtils::PutULongIntoDictAsString(record.get(), CFSTR("code"), file.error());
  XCFUtils::PutStringIntoDict(record.get(), CFSTR("message"), SentenceFor(file.error()));
  const std::vector<std::string> names(file.postscript_names().begin(), file.postscript_names().end());
  CFDictionarySetValue(record.get(), CFSTR("fonts"), ToCFArray(names).get());
  return record;
}

}  // namespace

ErrCode KilnLibraryAddPaths(FacadeRef facade, unsigned int workgroupID, CFArrayRef paths,
                            KilnProgressProc progress, void* context, CFMutableArrayRef outResults) {
  return EntryGuard::RunInSession(facade, [&](Session& session) -> ErrCode {
    if (const ErrCode code = EntryGuard::CheckObject(paths)) return code;
    if (const ErrCode code = EntryGuard::CheckObject(outResults)) return code;
    ClientMessage request;
    auto& list = *request.mutable_add_files();
    list.set_workgroup_id(workgroupID);
    for (const std::string& path : ToStringVector(paths)) {
      std::error_code error;  // the agent runs in another folder
      const std::string whole = std::filesystem::absolute(path, error);
      // Below a working folder whose name isn't UTF-8 it can't be said on the wire.
      if (ToCFString(whole) == nullptr) return GFileSystem::kInvalidPath;
      list.add_paths(whole);
    }
    std::vector<kiln::wire::AddedFile> files;
    const auto take = [&](const ServerMessage& message) {
      const auto& part = message.progress();
      files.insert(files.end(), part.results().begin(), part.results().end());
      const std::string last = part.results().empty() ? std::string() : part.results().rbegin()->path();
      if (progress != nullptr) progress(part.done(), part.total(), last.c_str(), context);
    };
    Connection::Incoming reply;
    if (const ErrCode code = session.Call(request, reply, {}, take)) return code;
    if (!reply.message.has_add_files()) return GKVMessageDataHandler::kInvalidMessage;
    for (const auto& file : files) CFArrayAppendValue(outResults, ResultRecord(file).get());
    return CoreErrorCodes::kSuccess;
  });
}

ErrCode KilnLibraryListFonts(FacadeRef facade, CFMutableArrayRef outFonts) {
  return EntryGuard::RunInSession(facade, [&](Session& session) -> ErrCode {
    if (const ErrCode code = EntryGuard::CheckObject(outFonts)) return code;
    std::vector<kiln::wire::Font> fonts;
    if (const ErrCode code = FontListing::Read(session, {}, fonts)) return code;
    std::erase_if(fonts, [](const auto& font) { return font.is_system(); });
    std::ranges::sort(fonts, {}, [](const auto& font) {
      return std::tuple(std::string_view(font.family()), std::string_view(font.postscript_name()), font.id());
    });
    for (const auto& font : fonts) {
      auto record = FontRecords::MakeRecord(font);
      FontRecords::PutMeaningOfState(record.get(), font.state());
      CFArrayAppendValue(outFonts, record.get());
    }
    return CoreErrorCodes::kSuccess;
  });
}

ErrCode KilnLibraryStatus(FacadeRef facade, CFMutableDictionaryRef outStatus) {
  return EntryGuard::RunInSession(facade, [&](Session& session) -> ErrCode {
    if (const ErrCode code = EntryGuard::CheckObject(outStatus)) return code;
    ClientMessage request;
    request.mutable_status();
    Connection::Incoming reply;
    if (const ErrCode code = EntryGuard::Ask(session, request, reply, &ServerMessage::has_status)) {
      return code;
    }
    const auto& status = reply.message.status();
    XCFUtils::PutStringIntoDict(outStatus, CFSTR("version"), status.kiln_version());
    XCFUtils::PutULongIntoDictAsString(outStatus, CFSTR("pid"), status.pid());
    XCFUtils::PutStringIntoDict(outStatus, CFSTR("vaultPath"), status.vault_path());
    XCFUtils::PutULongIntoDictAsString(outStatus, CFSTR("vaultStatus"), status.vault_error());
    XCFUtils::PutULongIntoDictAsString(outStatus, CFSTR("fontCount"), status.font_count());
    XCFUtils::PutULongIntoDictAsString(outStatus, CFSTR("systemFontCount"), status.system_font_count());
    XCFUtils::PutULongIntoDictAsString(outStatus, CFSTR("activeFontCount"), status.active_count());
    XCFUtils::PutULongIntoDictAsString(outStatus, CFSTR("clientCount"), status.client_count());
    XCFUtils::PutULongIntoDictAsString(outStatus, CFSTR("requestCount"), status.request_count());
    return CoreErrorCodes::kSuccess;
  });
}
