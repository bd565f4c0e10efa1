#pragma once

#include <mutex>
#include <set>
#include <span>
#include <vector>

#include "client/Session.h"

/// Which fonts the agent activated for this process, as far as its answers have come.
///
/// An agent that dies between the work and the answer leaves activations that this process holds without
/// knowing. When such a call is made again, the agent says that the fonts were active before; the process
/// must not take them for somebody else's, or nobody gives them back.
///
/// Thread: any.
class OwnActivations {
 public:
  /// A font of an activation's answer, with its state before.
  struct Answered {
    unsigned int id = 0;
    kiln::wire::ActivationState before = kiln::wire::ACTIVATION_INACTIVE;
  };

  /// An activation has gone without an answer.
  void LoseAnswer();

  /// Takes in an answer. After a lost one this asks the agent what is this process's own among fonts that
  /// seem to have been active before.
  ///
  /// \return For each font whether this call, or one whose answer was lost, made it active.
  std::vector<bool> TakeAnswer(Session& session, const std::vector<Answered>& fonts);

  void Release(std::span<const unsigned int> fontIDs);

  /// What was told last. The agent may know better: the user can have taken a font over.
  bool Holds(unsigned int fontID) const;

 private:
  std::set<unsigned int> Unknown(const std::vector<Answered>& fonts) const;

  mutable std::mutex mMutex;
  bool mAnswerLost = false;
  std::set<unsigned int> mHeld;
};
