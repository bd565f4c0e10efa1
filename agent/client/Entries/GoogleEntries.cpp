// The library of Google fonts.

#include <algorithm>
#include <vector>

#include "XCFUtils.h"
#include "client/Entries/EntryGuard.h"
#include "client/FontListing.h"
#include "client/FontRecords.h"
#include "client/LibraryInterface.h"

using kiln::wire::ClientMessage;
using kiln::wire::ServerMessage;

namespace {

ErrCode GoogleState(Session& session, Connection::Incoming& reply) {
  ClientMessage request;
  request.mutable_google_state();
  return EntryGuard::Ask(session, request, reply, &ServerMessage::has_google_state);
}

ErrCode SetGoogle(Session& session, bool enabled, const std::string& folder) {
  ClientMessage request;
  request.mutable_set_google()->set_enabled(enabled);
  request.mutable_set_google()->set_folder(folder);
  return EntryGuard::Order(session, request);
}

}  // namespace

ErrCode GetGoogleFonts(FacadeRef facade, CFMutableArrayRef outFonts) {
  return EntryGuard::RunInSession(facade, [&](Session& session) -> ErrCode {
    if (const ErrCode code = EntryGuard::CheckObject(outFonts)) return code;
    ClientMessage request;
    request.mutable_workgroups();
    Connection::Incoming reply;
    if (const ErrCode code = EntryGuard::Ask(session, request, reply, &ServerMessage::has_workgroups)) {
      return code;
    }
    const auto& workgroups = reply.message.workgroups().workgroups();
    const auto google = std::ranges::find(workgroups, kiln::wire::WORKGROUP_GOOGLE,
                                          [](const auto& workgroup) { return workgroup.type(); });
    if (google == workgroups.end()) return CoreErrorCodes::kSuccess;  // off
    std::vector<kiln::wire::Font> fonts;
    if (const ErrCode code = FontListing::Read(session, {google->id()}, fonts)) return code;
    for (const auto& font : fonts) CFArrayAppendValue(outFonts, FontRecords::MakeRecord(font).get());
    return CoreErrorCodes::kSuccess;
  });
}

ErrCode GetIsGoogleWebFontsEnabled(FacadeRef facade, int* outEnabled) {
  return EntryGuard::RunInSession(facade, [&](Session& session) -> ErrCode {
    if (outEnabled == nullptr) return CoreErrorCodes::kNullPointer;
    Connection::Incoming reply;
    if (const ErrCode code = GoogleState(session, reply)) return code;
    *outEnabled = reply.message.google_state().enabled() ? 1 : 0;
    return CoreErrorCodes::kSuccess;
  });
}

ErrCode SetGoogleWebFontsEnabled(FacadeRef facade, int enabled) {
  return EntryGuard::RunInSession(facade,
                                  [&](Session& session) { return SetGoogle(session, enabled != 0, {}); });
}

int CanAccessGoogleFonts(FacadeRef facade) {
  int accessible = 0;
  EntryGuard::RunInSession(facade, [&](Session& session) -> ErrCode {
    Connection::Incoming reply;
    const ErrCode code = GoogleState(session, reply);
    accessible = code == CoreErrorCodes::kSuccess && reply.message.google_state().accessible() ? 1 : 0;
    return code;
  });
  return accessible;
}

ErrCode KilnLibrarySetGoogle(FacadeRef facade, bool enabled, const char* folder) {
  return EntryGuard::RunInSession(facade, [&](Session& session) -> ErrCode {
    std::string path;
    if (folder != nullptr && *folder != '\0') {
      if (const ErrCode code = EntryGuard::ReadPath(folder, path)) return code;
    }
    return SetGoogle(session, enabled, path);
  });
}

ErrCode KilnLibraryGoogleState(FacadeRef facade, CFMutableDictionaryRef outState) {
  return EntryGuard::RunInSession(facade, [&](Session& session) -> ErrCode {
    if (const ErrCode code = EntryGuard::CheckObject(outState)) return code;
    Connection::Incoming reply;
    if (const ErrCode code = GoogleState(session, reply)) return code;
    const auto& state = reply.message.google_state();
    XCFUtils::PutBoolIntoDictAsString(outState, CFSTR("enabled"), state.enabled());
    XCFUtils::PutBoolIntoDictAsString(outState, CFSTR("accessible"), state.accessible());
    XCFUtils::PutStringIntoDict(outState, CFSTR("folder"), state.folder());
    return CoreErrorCodes::kSuccess;
  });
}
