#include "client/OwnActivations.h"

#include "GErrorCodes.h"
#include "protocol/ActivationStates.h"

namespace {

// The states that this process's own activation can show itself by.
bool MayBeOwn(kiln::wire::ActivationState state) {
  return state == kiln::wire::ACTIVATION_AUTO || state == kiln::wire::ACTIVATION_AUTO_LOCAL;
}

}  // namespace

void OwnActivations::LoseAnswer() {
  const std::scoped_lock lock(mMutex);
  mAnswerLost = true;
}

std::set<unsigned int> OwnActivations::Unknown(const std::vector<Answered>& fonts) const {
  const std::scoped_lock lock(mMutex);
  std::set<unsigned int> unknown;
  if (!mAnswerLost) return unknown;
  for (const Answered& font : fonts) {
    if (MayBeOwn(font.before) && !mHeld.contains(font.id)) unknown.insert(font.id);
  }
  return unknown;
}

std::vector<bool> OwnActivations::TakeAnswer(Session& session, const std::vector<Answered>& fonts) {
  std::set<unsigned int> lost;
  if (const std::set<unsigned int> unknown = Unknown(fonts); !unknown.empty()) {
    kiln::wire::ClientMessage request;
    request.mutable_client_activation_states()->mutable_font_ids()->Add(unknown.begin(), unknown.end());
    Connection::Incoming reply;
    const bool answered = session.Call(request, reply) == CoreErrorCodes::kSuccess;
    const auto& states = reply.message.client_activation_states().activated();
    auto state = states.begin();
    for (const unsigned int id : unknown) {
      if (answered && state != states.end() && *state++) lost.insert(id);
    }
  }
  const std::scoped_lock lock(mMutex);
  std::vector<bool> broughtIn;
  broughtIn.reserve(fonts.size());
  for (const Answered& font : fonts) {
    broughtIn.push_back(!kiln::IsActive(font.before) || lost.contains(font.id));
    if (broughtIn.back()) mHeld.insert(font.id);
  }
  return broughtIn;
}

void OwnActivations::Release(std::span<const unsigned int> fontIDs) {
  const std::scoped_lock lock(mMutex);
  for (const unsigned int id : fontIDs) mHeld.erase(id);
}

bool OwnActivations::Holds(unsigned int fontID) const {
  const std::scoped_lock lock(mMutex);
  return mHeld.contains(fontID);
}
