// Sets: named choices of the fonts of one workgroup.

#include "Memory/CFVector.h"
#include "XCFUtils.h"
#include "client/Entries/EntryGuard.h"
#include "client/FontRecords.h"
#include "client/LibraryInterface.h"
#include "client/RecordKeys.h"

using kiln::wire::ClientMessage;
using kiln::wire::ServerMessage;

namespace {

RetainPtr<CFMutableDictionaryRef> SetRecord(const kiln::wire::FontSet& set) {
  auto record = MakeDictionary();
  XCFUtils::PutULongIntoDictAsString(record.get(), RecordKeys::kSetID, set.id());
  XCFUtils::PutStringIntoDict(record.get(), RecordKeys::kSetName, set.name());
  XCFUtils::PutULongIntoDictAsString(record.get(), RecordKeys::kWorkgroupID, set.workgroup_id());
  XCFUtils::PutStringIntoDict(record.get(), RecordKeys::kWorkgroupName, set.workgroup_name());
  CFDictionarySetValue(record.get(), RecordKeys::kFontIDs, FontRecords::MakeIDList(set.font_ids()).get());
  return record;
}

}  // namespace

ErrCode CreateTopLevelSet(FacadeRef facade, int* outSetID, const char* name, int workgroupID, int, int,
                          unsigned long count, const unsigned int* fontIDs) {
  return EntryGuard::RunInSession(facade, [&](Session& session) -> ErrCode {
    if (outSetID == nullptr) return CoreErrorCodes::kNullPointer;
    ClientMessage request;
    auto& body = *request.mutable_create_set();
    body.set_workgroup_id(static_cast<uint32_t>(workgroupID));
    if (const ErrCode code = EntryGuard::ReadText(name, *body.mutable_name())) return code;
    if (const ErrCode code = EntryGuard::ReadIDs(fontIDs, count, *body.mutable_font_ids())) return code;
    Connection::Incoming reply;
    if (const ErrCode code = EntryGuard::Ask(session, request, reply, &ServerMessage::has_create_set,
                                             EntryGuard::kWorkLimit)) {
      return code;
    }
    *outSetID = static_cast<int>(reply.message.create_set().set_id());
    return CoreErrorCodes::kSuccess;
  });
}

ErrCode AddFontsToSets(FacadeRef facade, unsigned long fontCount, const unsigned int* fontIDs,
                       unsigned long setCount, const unsigned int* setIDs) {
  return EntryGuard::RunInSession(facade, [&](Session& session) -> ErrCode {
    ClientMessage request;
    auto& body = *request.mutable_add_fonts_to_sets();
    if (const ErrCode code = EntryGuard::ReadIDs(fontIDs, fontCount, *body.mutable_font_ids())) return code;
    if (const ErrCode code = EntryGuard::ReadIDs(setIDs, setCount, *body.mutable_set_ids())) return code;
    return EntryGuard::Order(session, request);
  });
}

ErrCode KilnLibraryListSets(FacadeRef facade, CFMutableArrayRef outSets) {
  return EntryGuard::RunInSession(facade, [&](Session& session) -> ErrCode {
    if (const ErrCode code = EntryGuard::CheckObject(outSets)) return code;
    ClientMessage request;
    request.mutable_list_sets();
    Connection::Incoming reply;
    if (const ErrCode code = EntryGuard::Ask(session, request, reply, &ServerMessage::has_list_sets)) {
      return code;
    }
    for (const auto& set : reply.message.list_sets().sets()) {
      CFArrayAppendValue(outSets, SetRecord(set).get());
    }
    return CoreErrorCodes::kSuccess;
  });
}

ErrCode KilnLibraryDeleteSet(FacadeRef facade, unsigned int setID) {
  return EntryGuard::RunInSession(facade, [&](Session& session) -> ErrCode {
    ClientMessage request;
    request.mutable_delete_set()->set_set_id(setID);
    return EntryGuard::Order(session, request);
  });
}
