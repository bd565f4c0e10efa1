#pragma once

#include <boost/asio/thread_pool.hpp>
#include <cstdint>
#include <memory>
#include <vector>

#include "kiln/fonts/FontExport.h"
#include "kiln/server/AgentState.h"
#include "kiln/server/Connection.h"
#include "kiln/server/Handling.h"

namespace kiln {

/// Sets, and the export of fonts. An export ends with the connection that asked for it.
class SetRequests {
 public:
  explicit SetRequests(AgentState& state) : mState(state) {}
  ~SetRequests();

  /// As SessionRequests::Handle(); the library is there.
  Handling Handle(const std::shared_ptr<Connection>& connection, const wire::ClientMessage& message,
                  wire::ServerMessage& reply);

 private:
  uint32_t ExportFonts(const std::shared_ptr<Connection>& connection, uint32_t requestID,
                       const wire::ExportFontsRequest& request);
  bool MayExport(uint32_t fontID);
  void AnnounceSets();

  AgentState& mState;
  boost::asio::thread_pool mWorker{1};
  std::vector<std::weak_ptr<FontExport>> mExports;
};

}  // namespace kiln
