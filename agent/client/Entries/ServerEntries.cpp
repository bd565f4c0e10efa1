// The font server that the agent works with, or that it stands alone.

#include "XCFUtils.h"
#include "client/Entries/EntryGuard.h"
#include "client/LibraryInterface.h"

using kiln::wire::ClientMessage;
using kiln::wire::ServerMessage;

ErrCode KilnLibraryLogIn(FacadeRef facade, const char* server, const char* user) {
  return EntryGuard::RunInSession(facade, [&](Session& session) -> ErrCode {
    ClientMessage request;
    auto& body = *request.mutable_log_in();
    if (const ErrCode code = EntryGuard::ReadPath(server, *body.mutable_server())) return code;
    if (user != nullptr) {
      if (const ErrCode code = EntryGuard::ReadText(user, *body.mutable_user())) return code;
    }
    return EntryGuard::Order(session, request);
  });
}

ErrCode KilnLibraryLogOut(FacadeRef facade, bool leave) {
  return EntryGuard::RunInSession(facade, [&](Session& session) -> ErrCode {
    ClientMessage request;
    request.mutable_log_out()->set_leave(leave);
    return EntryGuard::Order(session, request);
  });
}

ErrCode KilnLibraryServerState(FacadeRef facade, CFMutableDictionaryRef outState) {
  return EntryGuard::RunInSession(facade, [&](Session& session) -> ErrCode {
    if (const ErrCode code = EntryGuard::CheckObject(outState)) return code;
    ClientMessage request;
    request.mutable_server_state();
    Connection::Incoming reply;
    if (const ErrCode code = EntryGuard::Ask(session, request, reply, &ServerMessage::has_server_state)) {
      return code;
    }
    const auto& state = reply.message.server_state();
    XCFUtils::PutBoolIntoDictAsString(outState, CFSTR("standalone"), state.standalone());
    XCFUtils::PutBoolIntoDictAsString(outState, CFSTR("loggedIn"), state.logged_in());
    XCFUtils::PutBoolIntoDictAsString(outState, CFSTR("online"), state.online());
    XCFUtils::PutStringIntoDict(outState, CFSTR("server"), state.server());
    XCFUtils::PutStringIntoDict(outState, CFSTR("user"), state.user());
    XCFUtils::PutLongIntoDictAsString(outState, CFSTR("serverType"), state.server_type());
    return CoreErrorCodes::kSuccess;
  });
}
