#pragma once

#include <memory>

#include "kiln/server/AgentState.h"
#include "kiln/server/Connection.h"
#include "kiln/server/Handling.h"

namespace kiln {

/// Queries of the library, and what adds to it.
class LibraryRequests {
 public:
  explicit LibraryRequests(AgentState& state) : mState(state) {}

  /// As SessionRequests::Handle(); the library is there.
  Handling Handle(const std::shared_ptr<Connection>& connection, const wire::ClientMessage& message,
                  wire::ServerMessage& reply);

 private:
  /// Begins an import, which answers by itself.
  /// \return 0; or why there is none, which the caller answers.
  uint32_t AddFiles(const std::shared_ptr<Connection>& connection, uint32_t requestID,
                    const wire::AddFilesRequest& request);
  uint32_t FontInfo(Connection& connection, const wire::FontInfoRequest& request, wire::FontInfoReply& reply);
  void FontsByName(Connection& connection, const wire::FontsByNameRequest& request,
                   wire::FontsByNameReply& reply);
  void ListFonts(Connection& connection, const wire::ListFontsRequest& request, wire::ListFontsReply& reply);

  AgentState& mState;
};

}  // namespace kiln
