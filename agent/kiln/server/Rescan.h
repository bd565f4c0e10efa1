#pragma once

#include <boost/asio/steady_timer.hpp>
#include <memory>

#include "kiln/server/AgentState.h"
#include "kiln/server/Connection.h"

namespace kiln {

/// One RescanRequest at work. It answers by itself, with progress once a second; a client that leaves doesn't
/// end it.
class Rescan : public std::enable_shared_from_this<Rescan> {
 public:
  static void Start(AgentState& state, const std::shared_ptr<Connection>& connection, uint32_t requestID);

  Rescan(AgentState& state, const std::shared_ptr<Connection>& connection, uint32_t requestID);

 private:
  void Begin();
  void Tick();
  void PartDone();
  void Send(wire::ServerMessage message) const;

  AgentState& mState;
  const std::weak_ptr<Connection> mClient;
  const uint32_t mRequestID;
  std::unique_ptr<ReplicationBoard::Run> mRun;
  boost::asio::steady_timer mTimer;
  int mParts = 0;  // still at work
  uint32_t mError = 0;
  wire::TaskProgress mProgress;
  wire::RescanReply mReply;
};

}  // namespace kiln
