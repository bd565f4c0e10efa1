#pragma once

#include <memory>
#include <new>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>

#include "GErrorCodes.h"
#include "Memory/CFCast.h"
#include "client/ClientLibrary.h"
#include "client/LibraryInterface.h"
#include "client/Session.h"

/// What all entries share: nothing throws out of them, none runs inside a notification's receiver, and those
/// with a facade begin by finding its session.
namespace EntryGuard {

/// The agent has gone or doesn't answer.
inline bool IsUnreachable(ErrCode code) {
  return code == GIPCClient::kServiceUnavailable || code == GAgentIF::kShutdown;
}

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

/// For requests at which the agent links, copies or deletes files. It does one thing at a time, but it
/// answers pings meanwhile: a silence says that it is stopped or dead.
inline constexpr CallLimit kWorkLimit{.answer = std::chrono::milliseconds{60000},
                                      .silence = std::chrono::milliseconds{4000}};

/// Makes a request whose answer is a code alone.
ErrCode Order(Session& session, kiln::wire::ClientMessage& request, const CallLimit& limit = kWorkLimit);

/// Passes the agent's counts on.
///
/// \param progress  May be null; the counts keep the call alive all the same.
Connection::ProgressSink TellCounts(KilnProgressProc progress, void* context);

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

/// A path as an argument, made absolute, since the agent runs in another folder. As ReadText(), and
/// kInvalidParam for an empty one; GFileSystem::kInvalidPath below a working folder that isn't UTF-8.
ErrCode ReadPath(const char* argument, std::string& path);

/// An object as an argument: kNullPointer, kInvalidParam for one of another type, else 0.
template <typename T>
ErrCode CheckObject(T object) {
  if (object == nullptr) return CoreErrorCodes::kNullPointer;
  return dynamicCF<T>(object) == nullptr ? CoreErrorCodes::kInvalidParam : CoreErrorCodes::kSuccess;
}

/// A text as a result: kNullPointer, kIndexOutOfRange when it doesn't fit with its ending zero; the buffer is
/// untouched then.
ErrCode FillBuffer(std::string_view text, char* buffer, unsigned long size);

/// Both names of all workgroups together: the agent's own and the one that plug-ins show and store.
inline bool IsAllWorkgroups(int workgroupID) {
  return workgroupID == 0 || workgroupID == -2;
}

/// Far more than any library has: a count that has no sense must not fill the memory.
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
