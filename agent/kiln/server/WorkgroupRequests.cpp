#include "kiln/server/WorkgroupRequests.h"

#include <utility>

#include "protocol/ErrorCodes.h"
#include "protocol/PermissionColumns.h"

namespace kiln {

Handling WorkgroupRequests::Handle(const std::shared_ptr<Connection>&, const wire::ClientMessage& message,
                                   wire::ServerMessage& reply) {
  switch (message.body_case()) {
    case wire::ClientMessage::kWorkgroups:
      List(message.workgroups(), *reply.mutable_workgroups());
      return Handling::kDone;
    case wire::ClientMessage::kPermission:
      reply.mutable_permission()->set_allowed(IsAllowed(message.permission()));
      return Handling::kDone;
    default:
      return Handling::kNotMine;
  }
}

void WorkgroupRequests::List(const wire::WorkgroupsRequest& request, wire::WorkgroupsReply& reply) {
  for (wire::Workgroup& workgroup : mState.library->workgroups.Listed()) {
    if (workgroup.type() == wire::WORKGROUP_SYSTEM && !request.include_system()) continue;
    if (workgroup.type() == wire::WORKGROUP_TYPEKIT && !request.include_typekit()) continue;
    *reply.add_workgroups() = std::move(workgroup);
  }
}

// Standalone, the user may do everything with what is there.
bool WorkgroupRequests::IsAllowed(const wire::PermissionRequest& request) {
  if (request.column_id() == kCanActivateAcrossWorkgroupsColumn) return request.across_workgroups();
  if (request.column_id() != kExportFontsColumn) return false;
  return request.workgroup_id() == 0 || mState.library->workgroups.TypeOf(request.workgroup_id()).has_value();
}

}  // namespace kiln
