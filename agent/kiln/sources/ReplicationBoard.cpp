#include "kiln/sources/ReplicationBoard.h"

#include <algorithm>
#include <chrono>
#include <limits>
#include <map>
#include <utility>

namespace kiln {
namespace {

using Clock = std::chrono::steady_clock;

constexpr std::chrono::milliseconds kBetweenEvents{100};

uint32_t Narrow(uint64_t number) {
  return static_cast<uint32_t>(std::min<uint64_t>(number, std::numeric_limits<uint32_t>::max()));
}

}  // namespace

struct ReplicationBoard::State {
  struct OfKind {
    std::vector<Run*> runs;
    Clock::time_point told;
  };
  std::function<void(const wire::ServerMessage&)> broadcast;
  std::map<wire::ReplicationKind, OfKind> kinds;  // those with runs
};

ReplicationBoard::Run::Run(std::weak_ptr<State> state, wire::ReplicationKind kind)
    : mState(std::move(state)), mKind(kind) {}

ReplicationBoard::Run::~Run() {
  const std::shared_ptr<State> state = mState.lock();
  if (!state) return;
  std::vector<Run*>& runs = state->kinds[mKind].runs;
  runs.erase(std::remove(runs.begin(), runs.end(), this), runs.end());
  if (!runs.empty()) return;
  state->kinds.erase(mKind);
  wire::ServerMessage event;
  event.mutable_replication()->set_kind(mKind);
  event.mutable_replication()->set_stopped(true);
  state->broadcast(event);
}

void ReplicationBoard::Run::Progress(uint64_t step, uint64_t stepCount, const std::string& text) {
  mStep = step;
  mStepCount = stepCount;
  const std::shared_ptr<State> state = mState.lock();
  if (state && Clock::now() - state->kinds[mKind].told >= kBetweenEvents) Tell(*state, mKind, text);
}

ReplicationBoard::ReplicationBoard(std::function<void(const wire::ServerMessage&)> broadcast)
    : mState(std::make_shared<State>()) {
  mState->broadcast = std::move(broadcast);
}

std::unique_ptr<ReplicationBoard::Run> ReplicationBoard::Begin(wire::ReplicationKind kind,
                                                               const std::string& text) {
  auto run = std::make_unique<Run>(mState, kind);
  mState->kinds[kind].runs.push_back(run.get());
  Tell(*mState, kind, text);
  return run;
}

std::vector<wire::ReplicationKind> ReplicationBoard::Running() const {
  std::vector<wire::ReplicationKind> running;
  for (const auto& [kind, of] : mState->kinds) running.push_back(kind);
  return running;
}

void ReplicationBoard::Tell(State& state, wire::ReplicationKind kind, const std::string& text) {
  State::OfKind& of = state.kinds[kind];
  uint64_t step = 0;
  uint64_t count = 0;
  for (const Run* run : of.runs) {
    step += run->mStep;
    count += run->mStepCount;
  }
  of.told = Clock::now();
  wire::ServerMessage event;
  event.mutable_replication()->set_kind(kind);
  event.mutable_replication()->set_text(text);
  event.mutable_replication()->set_step(Narrow(step));
  event.mutable_replication()->set_step_count(Narrow(count));
  state.broadcast(event);
}

}  // namespace kiln
