#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "protocol/Kiln.pb.h"

namespace kiln {

/// What is being taken over into the library now, and the events that tell the clients of it.
///
/// Runs of one kind that overlap are one for the clients: their steps are added up, and "stopped" comes with
/// the end of the last.
class ReplicationBoard {
 private:
  struct State;

 public:
  /// From its Begin() to its end. May outlive the board.
  class Run {
   public:
    Run(std::weak_ptr<State> state, wire::ReplicationKind kind);
    ~Run();
    Run(const Run&) = delete;
    Run& operator=(const Run&) = delete;

    /// \param text  For the user: what is being taken over.
    void Progress(uint64_t step, uint64_t stepCount, const std::string& text);

   private:
    friend class ReplicationBoard;

    const std::weak_ptr<State> mState;
    const wire::ReplicationKind mKind;
    uint64_t mStep = 0;
    uint64_t mStepCount = 0;
  };

  explicit ReplicationBoard(std::function<void(const wire::ServerMessage&)> broadcast);

  std::unique_ptr<Run> Begin(wire::ReplicationKind kind, const std::string& text);
  /// In the order of their numbers.
  std::vector<wire::ReplicationKind> Running() const;

 private:
  static void Tell(State& state, wire::ReplicationKind kind, const std::string& text);

  const std::shared_ptr<State> mState;
};

}  // namespace kiln
