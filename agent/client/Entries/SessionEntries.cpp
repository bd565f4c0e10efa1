// Facade, session, receivers of notifications, and the agent's condition.

#include "client/Entries/EntryGuard.h"
#include "client/PluginInterface.h"

using EntryGuard::IsUnreachable;
using kiln::wire::ClientMessage;
using kiln::wire::ServerMessage;

namespace {

// Short enough for three tries within the launcher's five seconds.
constexpr CallLimit kPingLimit{.answer = std::chrono::milliseconds{1500}};

ErrCode Ping(Session& session) {
  ClientMessage request;
  request.mutable_ping();
  Connection::Incoming reply;
  return session.Call(request, reply, kPingLimit);
}

}  // namespace

FacadeRef GetPluginFacadeInstance() {
  try {
    return NotificationCenter::IsInReceiver() ? nullptr : ClientLibrary::Get().Facade();
  } catch (...) {
    return nullptr;
  }
}

ErrCode ResetPluginFacadeInstance() {
  return EntryGuard::Run([]() -> ErrCode {
    ClientLibrary::Get().Reset();
    return CoreErrorCodes::kSuccess;
  });
}

ErrCode InitAppInstance(FacadeRef facade, int hostType, int) {
  return EntryGuard::RunInSession(facade, [&](Session& session) -> ErrCode {
    session.SetHostType(hostType);
    ClientMessage request;
    request.mutable_init_app()->set_host_type(hostType);
    Connection::Incoming reply;
    const ErrCode code = session.Call(request, reply);
    // This side is set up all the same; that there is no agent is for GetIsCoreAgentProcessRunning() to tell.
    return IsUnreachable(code) ? CoreErrorCodes::kSuccess : code;
  });
}

ErrCode InitThreadInstance(FacadeRef facade) {
  return EntryGuard::RunInSession(facade, [&](Session& session) -> ErrCode {
    ClientMessage request;
    request.mutable_init_thread();
    Connection::Incoming reply;
    const ErrCode code = session.Call(request, reply);
    if (IsUnreachable(code) && !Session::IsAgentProcessRunning()) return GOspreyConfig::kAgentNotFound;
    if (IsUnreachable(code) || code == CoreErrorCodes::kVersionMismatch) {
      return GOspreyConfig::kAgentRunningInWrongMode;
    }
    return code;
  });
}

ErrCode DestroyThreadInstance(FacadeRef facade) {
  return EntryGuard::RunInSession(facade, [&](Session& session) -> ErrCode {
    ClientMessage request;
    request.mutable_end_session();
    const ErrCode code = session.CallIfConnected(request);
    return IsUnreachable(code) ? CoreErrorCodes::kSuccess : code;
  });
}

// This agent tells plug-ins from other clients by their requests; what is left is whether it is there.
ErrCode EnableDesignActivation(FacadeRef facade) {
  return EntryGuard::RunInSession(facade, [&](Session& session) { return Ping(session); });
}

ErrCode RegisterForNotifications(FacadeRef facade, NotifyProc callback) {
  return EntryGuard::RunInSession(facade, [&](Session& session) -> ErrCode {
    if (callback == nullptr) return CoreErrorCodes::kNullPointer;
    const ErrCode code = ClientLibrary::Get().Notifications().Register(callback);
    // Events come over a connection, so there should be one; the next call makes it when this can't.
    if (code == CoreErrorCodes::kSuccess) Ping(session);
    return code;
  });
}

ErrCode UnregisterForNotifications(FacadeRef, NotifyProc callback) {
  try {
    return ClientLibrary::Get().Notifications().Unregister(callback);
  } catch (...) {
    return CoreErrorCodes::kFatalError;
  }
}

ErrCode CleanUpOnShutdown(FacadeRef) {
  return EntryGuard::Run([]() -> ErrCode {
    ClientLibrary::Get().CleanUp();
    return CoreErrorCodes::kSuccess;
  });
}

ErrCode GetIsCoreAgentProcessRunning(FacadeRef facade, int* outRunning) {
  return EntryGuard::RunInSession(facade, [&](Session& session) -> ErrCode {
    if (outRunning == nullptr) return CoreErrorCodes::kNullPointer;
    const ErrCode code = Ping(session);
    if (code != CoreErrorCodes::kSuccess && !(IsUnreachable(code) && !Session::IsAgentProcessRunning())) {
      return code;
    }
    *outRunning = code == CoreErrorCodes::kSuccess ? 1 : 0;
    return CoreErrorCodes::kSuccess;
  });
}

ErrCode GetAreSchemaVersionsInSync(FacadeRef facade, int* outInSync) {
  return EntryGuard::RunInSession(facade, [&](Session& session) -> ErrCode {
    if (outInSync == nullptr) return CoreErrorCodes::kNullPointer;
    ClientMessage request;
    request.mutable_schema_in_sync();
    Connection::Incoming reply;
    const ErrCode code = EntryGuard::Ask(session, request, reply, &ServerMessage::has_schema_in_sync);
    if (code != CoreErrorCodes::kSuccess && code != CoreErrorCodes::kVersionMismatch) return code;
    *outInSync = code == CoreErrorCodes::kSuccess && reply.message.schema_in_sync().in_sync() ? 1 : 0;
    return CoreErrorCodes::kSuccess;
  });
}

ErrCode GetFontVaultPath(FacadeRef facade, unsigned long size, char* buffer) {
  return EntryGuard::RunInSession(facade, [&](Session& session) -> ErrCode {
    if (buffer == nullptr) return CoreErrorCodes::kNullPointer;
    ClientMessage request;
    request.mutable_vault_path();
    Connection::Incoming reply;
    if (const ErrCode code = EntryGuard::Ask(session, request, reply, &ServerMessage::has_vault_path)) {
      return code;
    }
    return EntryGuard::FillBuffer(reply.message.vault_path().path(), buffer, size);
  });
}

ErrCode GetIsLoggedIn(FacadeRef facade, int* outLoggedIn) {
  return EntryGuard::RunInSession(facade, [&](Session& session) -> ErrCode {
    if (outLoggedIn == nullptr) return CoreErrorCodes::kNullPointer;
    ClientMessage request;
    request.mutable_logged_in();
    Connection::Incoming reply;
    if (const ErrCode code = EntryGuard::Ask(session, request, reply, &ServerMessage::has_logged_in)) {
      return code;
    }
    *outLoggedIn = reply.message.logged_in().logged_in() ? 1 : 0;
    return CoreErrorCodes::kSuccess;
  });
}

ErrCode GetRunningStandalone(FacadeRef facade, int* outStandalone) {
  return EntryGuard::RunInSession(facade, [&](Session& session) -> ErrCode {
    if (outStandalone == nullptr) return CoreErrorCodes::kNullPointer;
    ClientMessage request;
    request.mutable_standalone();
    Connection::Incoming reply;
    if (const ErrCode code = EntryGuard::Ask(session, request, reply, &ServerMessage::has_standalone)) {
      return code;
    }
    *outStandalone = reply.message.standalone().standalone() ? 1 : 0;
    return CoreErrorCodes::kSuccess;
  });
}
