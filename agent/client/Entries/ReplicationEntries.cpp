// What the agent takes over from elsewhere, and a new look at it.

#include <algorithm>

#include "XCFUtils.h"
#include "client/Entries/EntryGuard.h"
#include "client/FontRecords.h"
#include "client/LibraryInterface.h"

using kiln::wire::ClientMessage;
using kiln::wire::ServerMessage;

namespace {

ErrCode ReplicationState(Session& session, Connection::Incoming& reply) {
  ClientMessage request;
  request.mutable_replication_state();
  return EntryGuard::Ask(session, request, reply, &ServerMessage::has_replication_state);
}

}  // namespace

ErrCode GetIsReplicationRunning(FacadeRef facade, int* outRunning) {
  return EntryGuard::RunInSession(facade, [&](Session& session) -> ErrCode {
    if (outRunning == nullptr) return CoreErrorCodes::kNullPointer;
    Connection::Incoming reply;
    if (const ErrCode code = ReplicationState(session, reply)) return code;
    *outRunning = reply.message.replication_state().running().empty() ? 0 : 1;
    return CoreErrorCodes::kSuccess;
  });
}

ErrCode GetCurrentReplicationMode(FacadeRef facade, int* outMode) {
  return EntryGuard::RunInSession(facade, [&](Session& session) -> ErrCode {
    if (outMode == nullptr) return CoreErrorCodes::kNullPointer;
    Connection::Incoming reply;
    if (const ErrCode code = ReplicationState(session, reply)) return code;
    const auto& running = reply.message.replication_state().running();
    *outMode = running.empty() ? -1 : *std::ranges::min_element(running);
    return CoreErrorCodes::kSuccess;
  });
}

ErrCode KilnLibraryRescan(FacadeRef facade, KilnProgressProc progress, void* context,
                          CFMutableDictionaryRef outReport) {
  return EntryGuard::RunInSession(facade, [&](Session& session) -> ErrCode {
    if (const ErrCode code = EntryGuard::CheckObject(outReport)) return code;
    ClientMessage request;
    request.mutable_rescan();
    Connection::Incoming reply;
    if (const ErrCode code =
            session.Call(request, reply, EntryGuard::kWorkLimit, EntryGuard::TellCounts(progress, context))) {
      return code;
    }
    if (!reply.message.has_rescan()) return GKVMessageDataHandler::kInvalidMessage;
    const auto& report = reply.message.rescan();
    XCFUtils::PutULongIntoDictAsString(outReport, CFSTR("filesChecked"), report.files_checked());
    CFDictionarySetValue(outReport, CFSTR("missingIDs"), FontRecords::MakeIDList(report.missing_ids()).get());
    CFDictionarySetValue(outReport, CFSTR("unusableIDs"),
                         FontRecords::MakeIDList(report.unusable_ids()).get());
    return CoreErrorCodes::kSuccess;
  });
}
