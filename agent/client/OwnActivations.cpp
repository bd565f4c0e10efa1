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

bool OwnActivations::HasLostAnswer() const {
  const std::scoped_lock lock(mMutex);
  return mAnswerLost;
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

TErrCode OwnActivations::AskWhichAreOwn(Session& session, std::set<unsigned int>& inOutIDs) {
  if (inOutIDs.empty()) return CoreErrorCodes::kSuccess;
  kiln::wire::ClientMessage request;
  request.mutable_client_activation_states()->mutable_font_ids()->Add(inOutIDs.begin(), inOutIDs.end());
  Connection::Incoming reply;
  if (const TErrCode code = session.Call(request, reply)) return code;
  const auto& states = reply.message.client_activation_states().activated();
  if (static_cast<size_t>(states.size()) != inOutIDs.size()) return GKVMessageDataHandler::kInvalidMessage;
  auto state = states.begin();
  std::erase_if(inOutIDs, [&state](unsigned int) { return !*state++; });
  return CoreErrorCodes::kSuccess;
}

TErrCode OwnActivations::TakeAnswer(Session& session, const std::vector<Answered>& fonts,
                                    std::vector<bool>& outBroughtIn) {
  std::set<unsigned int> lost = Unknown(fonts);
  if (const TErrCode code = AskWhichAreOwn(session, lost)) return code;
  const std::scoped_lock lock(mMutex);
  outBroughtIn.clear();
  for (const Answered& font : fonts) {
    outBroughtIn.push_back(!kiln::IsActive(font.before) || lost.contains(font.id));
    if (outBroughtIn.back()) mHeld.insert(font.id);
  }
  return CoreErrorCodes::kSuccess;
}

void OwnActivations::Release(std::span<const unsigned int> fontIDs) {
  const std::scoped_lock lock(mMutex);
  for (const unsigned int id : fontIDs) mHeld.erase(id);
}

bool OwnActivations::Holds(unsigned int fontID) const {
  const std::scoped_lock lock(mMutex);
  return mHeld.contains(fontID);
}
