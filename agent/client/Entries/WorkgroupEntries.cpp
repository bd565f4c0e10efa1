// Workgroups and what may be done in them.

#include <algorithm>

#include "Memory/CFVector.h"
#include "client/Entries/EntryGuard.h"
#include "client/FontRecords.h"
#include "client/PluginInterface.h"

using kiln::wire::ClientMessage;
using kiln::wire::ServerMessage;

namespace {

ErrCode Workgroups(Session& session, bool withSystem, bool withTypekit, Connection::Incoming& reply) {
  ClientMessage request;
  request.mutable_workgroups()->set_include_system(withSystem);
  request.mutable_workgroups()->set_include_typekit(withTypekit);
  return EntryGuard::Ask(session, request, reply, &ServerMessage::has_workgroups);
}

}  // namespace

ErrCode GetAllWorkgroupsForUser(FacadeRef facade, CFArrayRef* outWorkgroups, bool includeSystemWorkgroup,
                                bool includeTypekitLibrary) {
  return EntryGuard::RunInSession(facade, [&](Session& session) -> ErrCode {
    if (outWorkgroups == nullptr) return CoreErrorCodes::kNullPointer;
    Connection::Incoming reply;
    if (const ErrCode code = Workgroups(session, includeSystemWorkgroup, includeTypekitLibrary, reply)) {
      return code;
    }
    auto workgroups = MakeArray();
    for (const auto& workgroup : reply.message.workgroups().workgroups()) {
      CFArrayAppendValue(workgroups.get(), FontRecords::MakeWorkgroupRecord(workgroup).get());
    }
    *outWorkgroups = workgroups.leakRef();
    return CoreErrorCodes::kSuccess;
  });
}

ErrCode GetSystemWorkgroupID(FacadeRef facade, unsigned int* outID) {
  return EntryGuard::RunInSession(facade, [&](Session& session) -> ErrCode {
    if (outID == nullptr) return CoreErrorCodes::kNullPointer;
    Connection::Incoming reply;
    if (const ErrCode code = Workgroups(session, true, false, reply)) return code;
    const auto& workgroups = reply.message.workgroups().workgroups();
    const auto system = std::ranges::find(workgroups, kiln::wire::WORKGROUP_SYSTEM,
                                          [](const auto& workgroup) { return workgroup.type(); });
    if (system == workgroups.end()) return CoreErrorCodes::kNotFound;
    *outID = system->id();
    return CoreErrorCodes::kSuccess;
  });
}

ErrCode IsAllWorkgroups(FacadeRef, int workgroupID, int* outIsAll) {
  return EntryGuard::Run([&]() -> ErrCode {
    if (outIsAll == nullptr) return CoreErrorCodes::kNullPointer;
    *outIsAll = EntryGuard::IsAllWorkgroups(workgroupID) ? 1 : 0;
    return CoreErrorCodes::kSuccess;
  });
}

ErrCode GetPermission(FacadeRef facade, bool acrossWorkgroups, const char* columnID, int workgroupID,
                      int* outAllowed) {
  return EntryGuard::RunInSession(facade, [&](Session& session) -> ErrCode {
    if (outAllowed == nullptr) return CoreErrorCodes::kNullPointer;
    ClientMessage request;
    auto& body = *request.mutable_permission();
    body.set_across_workgroups(acrossWorkgroups);
    body.set_workgroup_id(EntryGuard::IsAllWorkgroups(workgroupID) ? 0 : static_cast<uint32_t>(workgroupID));
    if (const ErrCode code = EntryGuard::ReadText(columnID, *body.mutable_column_id())) return code;
    Connection::Incoming reply;
    if (const ErrCode code = EntryGuard::Ask(session, request, reply, &ServerMessage::has_permission)) {
      return code;
    }
    *outAllowed = reply.message.permission().allowed() ? 1 : 0;
    return CoreErrorCodes::kSuccess;
  });
}
