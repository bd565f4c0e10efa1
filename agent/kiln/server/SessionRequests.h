#pragma once

#include <memory>

#include "kiln/server/AgentState.h"
#include "kiln/server/Connection.h"

namespace kiln {

/// Hello, the session's start and end, what is known of the agent as a whole, and the client's log.
class SessionRequests {
 public:
  explicit SessionRequests(AgentState& state) : mState(state) {}

  /// \param reply  Has its `reply_to`; error and body are filled in.
  /// \return False for a request that isn't of this kind.
  bool Handle(Connection& connection, const wire::ClientMessage& message, wire::ServerMessage& reply);

  /// Ends what ends with a session.
  void EndSession(Connection& connection);

 private:
  uint32_t Hello(Connection& connection, const wire::HelloRequest& request, wire::HelloReply& reply);
  uint32_t InitApp(Connection& connection, int32_t hostType);
  uint32_t BeginLogging(Connection& connection, const std::string& fileName);
  void Status(wire::StatusReply& reply);

  AgentState& mState;
};

}  // namespace kiln
