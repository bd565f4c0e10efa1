#include "kiln/server/Rescan.h"

#include <utility>

#include "protocol/ErrorCodes.h"

namespace kiln {
namespace {

constexpr std::chrono::seconds kTick{1};

}  // namespace

void Rescan::Start(AgentState& state, const std::shared_ptr<Connection>& connection, uint32_t requestID) {
  std::make_shared<Rescan>(state, connection, requestID)->Begin();
}

Rescan::Rescan(AgentState& state, const std::shared_ptr<Connection>& connection, uint32_t requestID)
    : mState(state),
      mClient(connection),
      mRequestID(requestID),
      mRun(state.sources->replications.Begin(wire::REPLICATION_BULK, "")),
      mTimer(state.context) {}

void Rescan::Begin() {
  mState.vaultWatch->Check(
      [self = shared_from_this()](uint32_t done, uint32_t total) {
        self->mProgress.set_done(done);
        self->mProgress.set_total(total);
      },
      [self = shared_from_this()](uint32_t error, uint32_t checked) { self->ReadFolders(error, checked); });
  Tick();
}

void Rescan::Tick() {
  mTimer.expires_after(kTick);
  mTimer.async_wait([self = shared_from_this()](auto error) {
    if (error || self->mEnded) return;
    wire::ServerMessage message;
    *message.mutable_task_progress() = self->mProgress;
    self->Send(std::move(message));
    self->Tick();
  });
}

void Rescan::ReadFolders(uint32_t error, uint32_t checked) {
  if (error != codes::kSuccess) return End(error);
  mReply.set_files_checked(checked);
  const auto done = [self = shared_from_this()](bool) { self->FolderDone(); };
  mFolders = 2;
  mState.sources->google.Rescan(done);
  mState.sources->fontServer.Rescan(done);
}

void Rescan::FolderDone() {
  if (--mFolders == 0) End(codes::kSuccess);
}

void Rescan::End(uint32_t error) {
  mEnded = true;
  mTimer.cancel();
  wire::ServerMessage message;
  message.set_error(error);
  if (error == codes::kSuccess) {
    VaultFileStore& files = mState.library->vaultFiles;
    for (const uint32_t id : files.FontsOfFilesThatAre(FileState::kMissing)) mReply.add_missing_ids(id);
    for (const uint32_t id : files.FontsOfFilesThatAre(FileState::kUnusable)) mReply.add_unusable_ids(id);
    *message.mutable_rescan() = mReply;
  }
  Send(std::move(message));
  mRun = nullptr;
}

void Rescan::Send(wire::ServerMessage message) const {
  const std::shared_ptr<Connection> client = mClient.lock();
  if (!client) return;
  message.set_reply_to(mRequestID);
  client->Send(message);
}

}  // namespace kiln
