#pragma once

#include <memory>

#include "kiln/server/AgentState.h"
#include "kiln/server/Connection.h"
#include "kiln/server/Handling.h"

namespace kiln {

/// Workgroups: which there are, what may be done with them, and where their fonts come from: the user's hand,
/// the folder of the Google library, a font server.
class WorkgroupRequests {
 public:
  explicit WorkgroupRequests(AgentState& state) : mState(state) {}

  /// As SessionRequests::Handle(); the library is there.
  Handling Handle(const std::shared_ptr<Connection>& connection, const wire::ClientMessage& message,
                  wire::ServerMessage& reply);

 private:
  bool HandleQuery(const wire::ClientMessage& message, wire::ServerMessage& reply);
  void List(const wire::WorkgroupsRequest& request, wire::WorkgroupsReply& reply);
  bool IsAllowed(const wire::PermissionRequest& request);
  bool MayExportFrom(uint32_t workgroupID);

  uint32_t SetGoogle(const wire::SetGoogleRequest& request);
  uint32_t Create(const std::string& name, wire::CreateWorkgroupReply& reply);
  uint32_t Rename(const wire::RenameWorkgroupRequest& request);
  uint32_t Delete(uint32_t workgroupID);
  uint32_t ChangeFonts(const wire::ChangeWorkgroupFontsRequest& request,
                       wire::ChangeWorkgroupFontsReply& reply);

  AgentState& mState;
};

}  // namespace kiln
