// The user's libraries, made and changed by hand.

#include "Memory/CFVector.h"
#include "XCFUtils.h"
#include "client/Entries/EntryGuard.h"
#include "client/FontRecords.h"
#include "client/LibraryInterface.h"
#include "client/RecordKeys.h"

using kiln::wire::ClientMessage;
using kiln::wire::ServerMessage;

ErrCode KilnLibraryCreateWorkgroup(FacadeRef facade, const char* name, unsigned int* outID) {
  return EntryGuard::RunInSession(facade, [&](Session& session) -> ErrCode {
    if (outID == nullptr) return CoreErrorCodes::kNullPointer;
    ClientMessage request;
    auto& body = *request.mutable_create_workgroup();
    if (const ErrCode code = EntryGuard::ReadText(name, *body.mutable_name())) return code;
    Connection::Incoming reply;
    if (const ErrCode code = EntryGuard::Ask(session, request, reply, &ServerMessage::has_create_workgroup,
                                             EntryGuard::kWorkLimit)) {
      return code;
    }
    *outID = reply.message.create_workgroup().workgroup_id();
    return CoreErrorCodes::kSuccess;
  });
}

ErrCode KilnLibraryRenameWorkgroup(FacadeRef facade, unsigned int workgroupID, const char* name) {
  return EntryGuard::RunInSession(facade, [&](Session& session) -> ErrCode {
    ClientMessage request;
    auto& body = *request.mutable_rename_workgroup();
    body.set_workgroup_id(workgroupID);
    if (const ErrCode code = EntryGuard::ReadText(name, *body.mutable_name())) return code;
    return EntryGuard::Order(session, request);
  });
}

ErrCode KilnLibraryDeleteWorkgroup(FacadeRef facade, unsigned int workgroupID) {
  return EntryGuard::RunInSession(facade, [&](Session& session) -> ErrCode {
    ClientMessage request;
    request.mutable_delete_workgroup()->set_workgroup_id(workgroupID);
    return EntryGuard::Order(session, request);
  });
}

ErrCode KilnLibraryChangeWorkgroupFonts(FacadeRef facade, unsigned int workgroupID, unsigned long count,
                                        const unsigned int* fontIDs, bool remove, CFMutableArrayRef outKept) {
  return EntryGuard::RunInSession(facade, [&](Session& session) -> ErrCode {
    if (outKept != nullptr) {
      if (const ErrCode code = EntryGuard::CheckObject(outKept)) return code;
    }
    ClientMessage request;
    auto& body = *request.mutable_change_workgroup_fonts();
    body.set_workgroup_id(workgroupID);
    body.set_remove(remove);
    if (const ErrCode code = EntryGuard::ReadIDs(fontIDs, count, *body.mutable_font_ids())) return code;
    Connection::Incoming reply;
    if (const ErrCode code = EntryGuard::Ask(
            session, request, reply, &ServerMessage::has_change_workgroup_fonts, EntryGuard::kWorkLimit)) {
      return code;
    }
    if (outKept == nullptr) return CoreErrorCodes::kSuccess;
    const auto kept = FontRecords::MakeIDList(reply.message.change_workgroup_fonts().kept_ids());
    CFArrayAppendArray(outKept, kept.get(), CFRangeMake(0, CFArrayGetCount(kept.get())));
    return CoreErrorCodes::kSuccess;
  });
}

ErrCode KilnLibraryListWorkgroups(FacadeRef facade, CFMutableArrayRef outWorkgroups) {
  return EntryGuard::RunInSession(facade, [&](Session& session) -> ErrCode {
    if (const ErrCode code = EntryGuard::CheckObject(outWorkgroups)) return code;
    ClientMessage request;
    request.mutable_workgroups()->set_include_system(true);
    request.mutable_workgroups()->set_include_typekit(true);
    Connection::Incoming reply;
    if (const ErrCode code = EntryGuard::Ask(session, request, reply, &ServerMessage::has_workgroups)) {
      return code;
    }
    for (const auto& workgroup : reply.message.workgroups().workgroups()) {
      const auto record = FontRecords::MakeWorkgroupRecord(workgroup);
      XCFUtils::PutULongIntoDictAsString(record.get(), RecordKeys::kFontCount, workgroup.font_count());
      CFArrayAppendValue(outWorkgroups, record.get());
    }
    return CoreErrorCodes::kSuccess;
  });
}

ErrCode KilnLibrarySetRefused(FacadeRef facade, unsigned int workgroupID, unsigned long count,
                              const unsigned int* fontIDs, bool refused) {
  return EntryGuard::RunInSession(facade, [&](Session& session) -> ErrCode {
    ClientMessage request;
    auto& body = *request.mutable_set_compliance();
    body.set_workgroup_id(workgroupID);
    body.set_refused(refused);
    if (const ErrCode code = EntryGuard::ReadIDs(fontIDs, count, *body.mutable_font_ids())) return code;
    return EntryGuard::Order(session, request);
  });
}
