#pragma once

#include "kiln/server/AgentState.h"
#include "kiln/server/Connection.h"

namespace kiln {

/// What changes or asks for activations, and what bears on them: conflicts, families, the compliance rule.
/// Each change is announced behind its reply.
class ActivationRequests {
 public:
  explicit ActivationRequests(AgentState& state) : mState(state) {}

  /// As SessionRequests::Handle(); the library is there.
  /// \param change  What is to be announced behind the reply.
  bool Handle(Connection& connection, const wire::ClientMessage& message, wire::ServerMessage& reply,
              ActivationChange& change);

 private:
  uint32_t Activate(Connection& connection, const wire::ActivateFontsRequest& request,
                    wire::ActivateFontsReply& reply, ActivationChange& change);
  uint32_t Deactivate(Connection& connection, const wire::DeactivateFontsRequest& request,
                      wire::DeactivateFontsReply& reply, ActivationChange& change);

  uint32_t FamilyFonts(Connection& connection, const wire::FamilyFontsRequest& request,
                       wire::FamilyFontsReply& reply);

  AgentState& mState;
};

}  // namespace kiln
