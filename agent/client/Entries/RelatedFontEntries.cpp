// What a font stands beside: its family, and active fonts of its name.

#include <algorithm>

#include "XCFUtils.h"
#include "client/Entries/EntryGuard.h"
#include "client/FontRecords.h"
#include "client/RecordKeys.h"

using kiln::wire::ClientMessage;
using kiln::wire::ServerMessage;

ErrCode FindFontsInSameFamilyForActivation(CFDictionaryRef font, const unsigned int* workgroupIDs,
                                           unsigned long workgroupCount, CFMutableArrayRef outFonts) {
  return EntryGuard::RunInSession(GetPluginFacadeInstance(), [&](Session& session) -> ErrCode {
    if (const ErrCode code = EntryGuard::CheckObject(font)) return code;
    if (const ErrCode code = EntryGuard::CheckObject(outFonts)) return code;
    ClientMessage request;
    auto& body = *request.mutable_family_fonts();
    body.set_font_id(static_cast<uint32_t>(XCFUtils::GetULongFromDictString(font, RecordKeys::kDatabaseID)));
    if (const ErrCode code =
            EntryGuard::ReadIDs(workgroupIDs, workgroupCount, *body.mutable_workgroup_ids())) {
      return code;
    }
    Connection::Incoming reply;
    if (const ErrCode code = EntryGuard::Ask(session, request, reply, &ServerMessage::has_family_fonts)) {
      return code;
    }
    for (const auto& member : reply.message.family_fonts().fonts()) {
      CFArrayAppendValue(outFonts, FontRecords::MakeRecord(member).get());
    }
    return CoreErrorCodes::kSuccess;
  });
}

ErrCode GetFontConflicts(FacadeRef facade, unsigned long count, const unsigned int* fontIDs,
                         unsigned int* outConflicts) {
  return EntryGuard::RunInSession(facade, [&](Session& session) -> ErrCode {
    if (outConflicts == nullptr && count != 0) return CoreErrorCodes::kNullPointer;
    ClientMessage request;
    if (const ErrCode code =
            EntryGuard::ReadIDs(fontIDs, count, *request.mutable_font_conflicts()->mutable_font_ids())) {
      return code;
    }
    Connection::Incoming reply;
    if (const ErrCode code = EntryGuard::Ask(session, request, reply, &ServerMessage::has_font_conflicts)) {
      return code;
    }
    const auto& conflicts = reply.message.font_conflicts().conflicting_ids();
    if (static_cast<unsigned long>(conflicts.size()) != count) return GKVMessageDataHandler::kInvalidMessage;
    std::ranges::copy(conflicts, outConflicts);
    return CoreErrorCodes::kSuccess;
  });
}
