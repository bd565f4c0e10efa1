#include "kiln/server/WorkgroupRequests.h"

#include <algorithm>
#include <span>
#include <utility>

#include "kiln/server/RequestLimits.h"
#include "kiln/server/Rescan.h"
#include "kiln/sources/UserLibraries.h"
#include "protocol/ErrorCodes.h"
#include "protocol/PermissionColumns.h"

namespace kiln {

Handling WorkgroupRequests::Handle(const std::shared_ptr<Connection>& connection,
                                   const wire::ClientMessage& message, wire::ServerMessage& reply) {
  LibrarySources& sources = *mState.sources;
  switch (message.body_case()) {
    case wire::ClientMessage::kLogIn:
      reply.set_error(IsPath(message.log_in().server())
                          ? sources.fontServer.LogIn(message.log_in().server(), message.log_in().user())
                          : codes::kFailedToConnect);
      return Handling::kDone;
    case wire::ClientMessage::kLogOut:
      reply.set_error(sources.fontServer.LogOut(message.log_out().leave()));
      return Handling::kDone;
    case wire::ClientMessage::kCreateWorkgroup:
      reply.set_error(Create(message.create_workgroup().name(), *reply.mutable_create_workgroup()));
      return Handling::kDone;
    case wire::ClientMessage::kRenameWorkgroup:
      reply.set_error(Rename(message.rename_workgroup()));
      return Handling::kDone;
    case wire::ClientMessage::kDeleteWorkgroup:
      reply.set_error(Delete(message.delete_workgroup().workgroup_id()));
      return Handling::kDone;
    case wire::ClientMessage::kChangeWorkgroupFonts:
      reply.set_error(ChangeFonts(message.change_workgroup_fonts(), *reply.mutable_change_workgroup_fonts()));
      return Handling::kDone;
    case wire::ClientMessage::kSetGoogle:
      reply.set_error(SetGoogle(message.set_google()));
      return Handling::kDone;
    case wire::ClientMessage::kRescan:
      Rescan::Start(mState, connection, message.id());
      return Handling::kLater;
    default:
      return HandleQuery(message, reply) ? Handling::kDone : Handling::kNotMine;
  }
}

bool WorkgroupRequests::HandleQuery(const wire::ClientMessage& message, wire::ServerMessage& reply) {
  switch (message.body_case()) {
    case wire::ClientMessage::kServerState:
      mState.sources->fontServer.Describe(*reply.mutable_server_state());
      return true;
    case wire::ClientMessage::kWorkgroups:
      List(message.workgroups(), *reply.mutable_workgroups());
      return true;
    case wire::ClientMessage::kPermission:
      reply.mutable_permission()->set_allowed(IsAllowed(message.permission()));
      return true;
    case wire::ClientMessage::kGoogleState:
      mState.sources->google.Describe(*reply.mutable_google_state());
      return true;
    case wire::ClientMessage::kReplicationState:
      reply.mutable_replication_state();
      for (const wire::ReplicationKind kind : mState.sources->replications.Running()) {
        reply.mutable_replication_state()->add_running(kind);
      }
      return true;
    default:
      return false;
  }
}

void WorkgroupRequests::List(const wire::WorkgroupsRequest& request, wire::WorkgroupsReply& reply) {
  for (wire::Workgroup& workgroup : mState.library->workgroups.Listed()) {
    if (workgroup.type() == wire::WORKGROUP_SYSTEM && !request.include_system()) continue;
    if (workgroup.type() == wire::WORKGROUP_TYPEKIT && !request.include_typekit()) continue;
    *reply.add_workgroups() = std::move(workgroup);
  }
}

bool WorkgroupRequests::MayExportFrom(uint32_t workgroupID) {
  WorkgroupStore& workgroups = mState.library->workgroups;
  if (workgroupID != 0) return workgroups.AllowsExport(workgroupID);
  const std::vector<wire::Workgroup> all = workgroups.Listed();
  return std::all_of(all.begin(), all.end(),
                     [&workgroups](const wire::Workgroup& one) { return workgroups.AllowsExport(one.id()); });
}

bool WorkgroupRequests::IsAllowed(const wire::PermissionRequest& request) {
  if (request.column_id() == kCanActivateAcrossWorkgroupsColumn) {
    return request.across_workgroups() && mState.sources->fontServer.MayActivateAcross();
  }
  return request.column_id() == kExportFontsColumn && MayExportFrom(request.workgroup_id());
}

uint32_t WorkgroupRequests::SetGoogle(const wire::SetGoogleRequest& request) {
  if (request.enabled() && !request.folder().empty() && !IsPath(request.folder()))
    return codes::kInvalidParam;
  return mState.sources->google.Set(request.enabled(), request.folder());
}

uint32_t WorkgroupRequests::Create(const std::string& name, wire::CreateWorkgroupReply& reply) {
  if (!mState.sources->fontServer.ListsLocalLibraries()) return codes::kRestrictedWorkgroup;
  uint32_t id = 0;
  if (const uint32_t error = UserLibraries(*mState.library).Create(name, id)) return error;
  reply.set_workgroup_id(id);
  mState.sources->services.TellWorkgroupsChanged();
  return codes::kSuccess;
}

uint32_t WorkgroupRequests::Rename(const wire::RenameWorkgroupRequest& request) {
  const uint32_t error = UserLibraries(*mState.library).Rename(request.workgroup_id(), request.name());
  if (error == codes::kSuccess) mState.sources->services.TellWorkgroupsChanged();
  return error;
}

uint32_t WorkgroupRequests::Delete(uint32_t workgroupID) {
  const LibraryServices& services = mState.sources->services;
  const int64_t setEntries = services.CountSetEntries();
  if (const uint32_t error = UserLibraries(*mState.library).Delete(workgroupID)) return error;
  services.TellWorkgroupsChanged();
  if (services.CountSetEntries() != setEntries) services.TellSetsChanged();
  return codes::kSuccess;
}

uint32_t WorkgroupRequests::ChangeFonts(const wire::ChangeWorkgroupFontsRequest& request,
                                        wire::ChangeWorkgroupFontsReply& reply) {
  const LibraryServices& services = mState.sources->services;
  const std::span<const uint32_t> ids(request.font_ids().data(),
                                      static_cast<size_t>(request.font_ids_size()));
  const int64_t setEntries = services.CountSetEntries();
  UserLibraries libraries(*mState.library);
  std::vector<uint32_t> changed;
  std::vector<uint32_t> kept;
  const uint32_t error = request.remove() ? libraries.TakeOut(request.workgroup_id(), ids, changed, kept)
                                          : libraries.PutIn(request.workgroup_id(), ids, changed);
  if (error != codes::kSuccess) return error;
  reply.mutable_kept_ids()->Add(kept.begin(), kept.end());
  services.TellLibraryChanged(changed);
  if (services.CountSetEntries() != setEntries) services.TellSetsChanged();
  if (request.remove()) services.sweep.Run();
  return codes::kSuccess;
}

}  // namespace kiln
