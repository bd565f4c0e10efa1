#pragma once

#include <memory>

#include "kiln/server/AgentState.h"
#include "kiln/server/Connection.h"
#include "kiln/server/Handling.h"

namespace kiln {

/// Workgroups: which there are, what may be done with them, and where their fonts come from.
class WorkgroupRequests {
 public:
  explicit WorkgroupRequests(AgentState& state) : mState(state) {}

  /// As SessionRequests::Handle(); the library is there.
  Handling Handle(const std::shared_ptr<Connection>& connection, const wire::ClientMessage& message,
                  wire::ServerMessage& reply);

 private:
  void List(const wire::WorkgroupsRequest& request, wire::WorkgroupsReply& reply);
  bool IsAllowed(const wire::PermissionRequest& request);

  AgentState& mState;
};

}  // namespace kiln
