#pragma once

#include <memory>
#include <new>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>

#include "GErrorCodes.h"
#include "client/ClientLibrary.h"
#include "client/PluginInterface.h"
#include "client/Session.h"

/// What all entries share: nothing throws out of them, none runs inside a notification's receiver, and those
/// with a facade begin by finding its session.
namespace EntryGuard {

/// Runs the body of an entry and turns what it throws into a code.
template <typename Body>
ErrCode Run(Body&& body) noexcept {
  static_assert(std::is_same_v<decltype(body()), ErrCode>);
  try {
    if (NotificationCenter::IsInReceiver()) return CoreErrorCodes::kNotSupported;
    return body();
  } catch (const std::bad_alloc&) {
    return CoreErrorCodes::kOutOfMemory;
  } catch (...) {
    return CoreErrorCodes::kFatalError;
  }
}

/// Runs the body with the session of the facade.
template <typename Body>
ErrCode RunInSession(FacadeRef facade, Body&& body) noexcept {
  return Run([&]() -> ErrCode {
    const std::shared_ptr<Session> session = ClientLibrary::Get().Find(facade);
    return session == nullptr ? GAgentIF::kShutdown : body(*session);
  });
}

/// Makes a request whose answer must hold the given part.
///
/// \param part  Whether the answer has it: &ServerMessage::has_status.
/// \return As Session::Call(); GKVMessageDataHandler::kInvalidMessage for an answer of another kind.
template <typename Part>
ErrCode Ask(Session& session, kiln::wire::ClientMessage& request, Connection::Incoming& reply, Part part,
            const CallLimit& limit = {}) {
  if (const ErrCode code = session.Call(request, reply, limit)) return code;
  return (reply.message.*part)() ? CoreErrorCodes::kSuccess : GKVMessageDataHandler::kInvalidMessage;
}

/// A text as an argument: kNullPointer, kInvalidParam for what isn't UTF-8, else 0 with the text.
ErrCode ReadText(const char* argument, std::string& text);

/// A text as a result: kNullPointer, kIndexOutOfRange when it doesn't fit with its ending zero; the buffer is
/// untouched then.
ErrCode FillBuffer(std::string_view text, char* buffer, unsigned long size);

/// More IDs than this don't fit into a message.
inline constexpr unsigned long kMaxIDs = 4u << 20;

/// Appends the IDs to a list of the wire. kNullPointer for none with a count that isn't 0.
template <typename List>
ErrCode ReadIDs(const unsigned int* ids, unsigned long count, List& list) {
  if (ids == nullptr && count != 0) return CoreErrorCodes::kNullPointer;
  if (count > kMaxIDs) return GIPCReceiver::kMessageTooLarge;
  list.Add(ids, ids + count);
  return CoreErrorCodes::kSuccess;
}

}  // namespace EntryGuard
