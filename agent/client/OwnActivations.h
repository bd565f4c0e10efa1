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
/// must not take them for somebody else's, or nobody gives them back. What is given back in that way is told
/// by nobody; the process must not go on showing it.
///
/// Thread: any.
class OwnActivations {
 public:
  /// A font of an activation's answer, with its state before.
  struct Answered {
    unsigned int id = 0;
    kiln::wire::ActivationState before = kiln::wire::ACTIVATION_INACTIVE;
  };

  /// An activation, or a giving back, has gone without an answer.
  void LoseAnswer();
  bool HasLostAnswer() const;

  /// Takes in an answer. After a lost one this asks the agent what is this process's own among fonts that
  /// seem to have been active before.
  ///
  /// \param outBroughtIn  Receives for each font whether this call, or one whose answer was lost, made it
  ///     active. Untouched on failure.
  /// \return 0; the code of the question, with nothing taken in: the activation is to be made again.
  TErrCode TakeAnswer(Session& session, const std::vector<Answered>& fonts, std::vector<bool>& outBroughtIn);

  /// The fonts are this process's no more: given back, or the user's by hand.
  void Release(std::span<const unsigned int> fontIDs);

  /// What was told last. The agent may know better: the user can have taken a font over.
  bool Holds(unsigned int fontID) const;

 private:
  std::set<unsigned int> Unknown(const std::vector<Answered>& fonts) const;
  static TErrCode AskWhichAreOwn(Session& session, std::set<unsigned int>& inOutIDs);

  mutable std::mutex mMutex;
  bool mAnswerLost = false;
  std::set<unsigned int> mHeld;
};
