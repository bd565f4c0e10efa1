// Copying fonts out of the library.

#include <string>

#include "GErrors.h"
#include "GFileSystem.h"
#include "Memory/CFVector.h"
#include "XCFUtils.h"
#include "client/Entries/EntryGuard.h"
#include "client/LibraryInterface.h"
#include "client/RecordKeys.h"

using kiln::wire::ClientMessage;
using kiln::wire::ServerMessage;

namespace {

std::string SentenceFor(ErrCode code) {
  switch (code) {
    case CoreErrorCodes::kSuccess:
      return {};
    case GFontActivationManager::kInvalidFontIDs:
      return "There is no such font.";
    case GOspreyAssetManager::kFontMissing:
      return "The library has lost its file.";
    case GFontToolResults::kCorrupt:
      return "The font is damaged.";
    case GFileSystem::kDiskFull:
      return "The disk is full.";
    default:
      return "It can't be copied (" + GetNameForErrorCode(code) + ").";
  }
}

RetainPtr<CFMutableDictionaryRef> ResultRecord(const kiln::wire::ExportedFont& font) {
  auto record = MakeDictionary();
  XCFUtils::PutULongIntoDictAsString(record.get(), RecordKeys::kDatabaseID, font.font_id());
  XCFUtils::PutStringIntoDict(record.get(), CFSTR("path"), font.path());
  XCFUtils::PutULongIntoDictAsString(record.get(), CFSTR("code"), font.error());
  XCFUtils::PutStringIntoDict(record.get(), CFSTR("message"), SentenceFor(font.error()));
  return record;
}

// The reply has its body also with the codes that say what went wrong.
ErrCode Export(Session& session, unsigned long count, const unsigned int* fontIDs,
               const char* destinationPath, const Connection::ProgressSink& progress,
               Connection::Incoming& reply) {
  ClientMessage request;
  auto& body = *request.mutable_export_fonts();
  if (const ErrCode code = EntryGuard::ReadIDs(fontIDs, count, *body.mutable_font_ids())) return code;
  if (const ErrCode code = EntryGuard::ReadPath(destinationPath, *body.mutable_destination())) return code;
  const ErrCode code = session.Call(request, reply, EntryGuard::kWorkLimit, progress);
  const bool answered = reply.message.has_export_fonts();
  return code == CoreErrorCodes::kSuccess && !answered ? GKVMessageDataHandler::kInvalidMessage : code;
}

}  // namespace

ErrCode CanExportFonts(FacadeRef facade, unsigned long count, const unsigned int* fontIDs, int* outAllowed) {
  return EntryGuard::RunInSession(facade, [&](Session& session) -> ErrCode {
    if (outAllowed == nullptr) return CoreErrorCodes::kNullPointer;
    ClientMessage request;
    auto& ids = *request.mutable_can_export_fonts()->mutable_font_ids();
    if (const ErrCode code = EntryGuard::ReadIDs(fontIDs, count, ids)) return code;
    Connection::Incoming reply;
    if (const ErrCode code = EntryGuard::Ask(session, request, reply, &ServerMessage::has_can_export_fonts)) {
      return code;
    }
    *outAllowed = reply.message.can_export_fonts().allowed() ? 1 : 0;
    return CoreErrorCodes::kSuccess;
  });
}

ErrCode ExportFonts(FacadeRef facade, unsigned long count, const unsigned int* fontIDs,
                    const char* destinationPath, int, int) {
  return EntryGuard::RunInSession(facade, [&](Session& session) {
    Connection::Incoming reply;
    return Export(session, count, fontIDs, destinationPath, EntryGuard::TellCounts(nullptr, nullptr), reply);
  });
}

ErrCode KilnLibraryExportFonts(FacadeRef facade, unsigned long count, const unsigned int* fontIDs,
                               const char* destinationPath, KilnProgressProc progress, void* context,
                               CFMutableArrayRef outResults) {
  return EntryGuard::RunInSession(facade, [&](Session& session) -> ErrCode {
    if (const ErrCode code = EntryGuard::CheckObject(outResults)) return code;
    Connection::Incoming reply;
    const ErrCode code =
        Export(session, count, fontIDs, destinationPath, EntryGuard::TellCounts(progress, context), reply);
    for (const auto& font : reply.message.export_fonts().fonts()) {
      CFArrayAppendValue(outResults, ResultRecord(font).get());
    }
    return code;
  });
}
