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
  const auto partDone = [self = shared_from_this()](bool) { self->PartDone(); };
  mParts = 3;
  mState.sources->google.Rescan(partDone);
  mState.sources->fontServer.Rescan(partDone);
  mState.vaultWatch->Check(
      [self = shared_from_this()](uint32_t done, uint32_t total) {
        self->mProgress.set_done(done);
        self->mProgress.set_total(total);
        self->mRun->Progress(done, total, "");
      },
      [self = shared_from_this()](uint32_t error, uint32_t checked) {
        self->mError = error;
        self->mReply.set_files_checked(checked);
        self->PartDone();
      });
  Tick();
}

void Rescan::Tick() {
  mTimer.expires_after(kTick);
  mTimer.async_wait([self = shared_from_this()](auto error) {
    if (error || self->mParts == 0) return;
    wire::ServerMessage message;
    *message.mutable_task_progress() = self->mProgress;
    self->Send(std::move(message));
    self->Tick();
  });
}

void Rescan::PartDone() {
  if (--mParts > 0) return;
  mTimer.cancel();
  wire::ServerMessage message;
  message.set_error(mError);
  if (mError == codes::kSuccess) {
    for (const uint32_t font : mState.library->vaultFiles.MissingFonts()) mReply.add_missing_ids(font);
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
