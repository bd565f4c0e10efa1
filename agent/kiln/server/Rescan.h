#pragma once

#include <boost/asio/steady_timer.hpp>
#include <memory>

#include "kiln/server/AgentState.h"
#include "kiln/server/Connection.h"

namespace kiln {

/// One RescanRequest at work: first the vault, then the folders, which may have again what the vault has
/// lost. It answers by itself, with progress once a second; a client that leaves doesn't end it.
class Rescan : public std::enable_shared_from_this<Rescan> {
 public:
  static void Start(AgentState& state, const std::shared_ptr<Connection>& connection, uint32_t requestID);

  Rescan(AgentState& state, const std::shared_ptr<Connection>& connection, uint32_t requestID);

 private:
  void Begin();
  void Tick();
  void ReadFolders(uint32_t error, uint32_t checked);
  void FolderDone();
  void End(uint32_t error);
  void Send(wire::ServerMessage message) const;

  AgentState& mState;
  const std::weak_ptr<Connection> mClient;
  const uint32_t mRequestID;
  std::unique_ptr<ReplicationBoard::Run> mRun;
  boost::asio::steady_timer mTimer;
  int mFolders = 0;  // still being read
  bool mEnded = false;
  uint32_t mError = 0;
  wire::TaskProgress mProgress;
  wire::RescanReply mReply;
};

}  // namespace kiln
