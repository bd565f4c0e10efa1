// What is known of fonts.

#include <algorithm>

#include "Memory/CFCast.h"
#include "XCFUtils.h"
#include "client/Entries/EntryGuard.h"
#include "client/FontRecords.h"
#include "client/PluginInterface.h"
#include "client/RecordKeys.h"

using kiln::wire::ClientMessage;
using kiln::wire::ServerMessage;

namespace {

ErrCode FontsByName(FacadeRef facade, kiln::wire::NameType type, const char* name,
                    const unsigned int* workgroupIDs, unsigned long workgroupCount, unsigned int* outIDs,
                    unsigned long capacity, unsigned int* outCount) {
  return EntryGuard::RunInSession(facade, [&](Session& session) -> ErrCode {
    if (outCount == nullptr || (outIDs == nullptr && capacity != 0)) return CoreErrorCodes::kNullPointer;
    ClientMessage request;
    auto& body = *request.mutable_fonts_by_name();
    body.set_type(type);
    if (const ErrCode code = EntryGuard::ReadText(name, *body.mutable_name())) return code;
    if (const ErrCode code =
            EntryGuard::ReadIDs(workgroupIDs, workgroupCount, *body.mutable_workgroup_ids())) {
      return code;
    }
    // 0 would ask for all of them.
    body.set_limit(static_cast<uint32_t>(std::clamp(capacity, 1ul, EntryGuard::kMaxIDs)));
    Connection::Incoming reply;
    if (const ErrCode code = EntryGuard::Ask(session, request, reply, &ServerMessage::has_fonts_by_name)) {
      return code;
    }
    const auto& found = reply.message.fonts_by_name().font_ids();
    const unsigned long count = std::min(capacity, static_cast<unsigned long>(found.size()));
    std::copy_n(found.begin(), count, outIDs);
    *outCount = static_cast<unsigned int>(count);
    return CoreErrorCodes::kSuccess;
  });
}

}  // namespace

ErrCode GetFontsByPostscriptName(FacadeRef facade, const char* name, const unsigned int* workgroupIDs,
                                 unsigned long workgroupCount, unsigned int* outIDs, unsigned long capacity,
                                 unsigned int* outCount) {
  return FontsByName(facade, kiln::wire::NAME_POSTSCRIPT, name, workgroupIDs, workgroupCount, outIDs,
                     capacity, outCount);
}

ErrCode GetFontsByFamilyName(FacadeRef facade, const char* name, const unsigned int* workgroupIDs,
                             unsigned long workgroupCount, unsigned int* outIDs, unsigned long capacity,
                             unsigned int* outCount) {
  return FontsByName(facade, kiln::wire::NAME_FAMILY, name, workgroupIDs, workgroupCount, outIDs, capacity,
                     outCount);
}

ErrCode GetFontInfoByID(FacadeRef facade, const unsigned int* workgroupIDs, unsigned long workgroupCount,
                        CFDictionaryRef query, unsigned int* outID, CFMutableDictionaryRef* outInfo) {
  return EntryGuard::RunInSession(facade, [&](Session& session) -> ErrCode {
    if (outInfo == nullptr) return CoreErrorCodes::kNullPointer;
    if (const ErrCode code = EntryGuard::CheckObject(query)) return code;
    ClientMessage request;
    auto& body = *request.mutable_font_info();
    body.set_font_id(static_cast<uint32_t>(XCFUtils::GetULongFromDictString(query, RecordKeys::kDatabaseID)));
    if (const ErrCode code =
            EntryGuard::ReadIDs(workgroupIDs, workgroupCount, *body.mutable_workgroup_ids())) {
      return code;
    }
    Connection::Incoming reply;
    ErrCode code = EntryGuard::Ask(session, request, reply, &ServerMessage::has_font_info);
    if (code == CoreErrorCodes::kNotFound && !body.workgroup_ids().empty()) {
      // Lookups by name add the system's fonts to those of any workgroup; so their records must be there.
      body.clear_workgroup_ids();
      code = EntryGuard::Ask(session, request, reply, &ServerMessage::has_font_info);
      if (code == CoreErrorCodes::kSuccess && !reply.message.font_info().font().is_system()) {
        code = CoreErrorCodes::kNotFound;
      }
    }
    if (code != CoreErrorCodes::kSuccess) return code;
    const auto& font = reply.message.font_info().font();
    *outInfo = FontRecords::MakeRecord(font).leakRef();
    if (outID != nullptr) *outID = font.id();
    return CoreErrorCodes::kSuccess;
  });
}

ErrCode GetFontIsActivated(FacadeRef facade, unsigned long count, const unsigned int* fontIDs,
                           int* outStates) {
  return EntryGuard::RunInSession(facade, [&](Session& session) -> ErrCode {
    if (outStates == nullptr && count != 0) return CoreErrorCodes::kNullPointer;
    ClientMessage request;
    if (const ErrCode code =
            EntryGuard::ReadIDs(fontIDs, count, *request.mutable_font_is_activated()->mutable_font_ids())) {
      return code;
    }
    Connection::Incoming reply;
    if (const ErrCode code =
            EntryGuard::Ask(session, request, reply, &ServerMessage::has_font_is_activated)) {
      return code;
    }
    const auto& answer = reply.message.font_is_activated();
    if (static_cast<unsigned long>(answer.states_size()) != count) {
      return GKVMessageDataHandler::kInvalidMessage;
    }
    for (int i = 0; i < answer.states_size(); ++i) {
      outStates[i] = FontRecords::IsActive(answer.states(i)) ? 1 : 0;
    }
    return CoreErrorCodes::kSuccess;
  });
}

ErrCode GetClientFontActivationStates(unsigned long count, const unsigned int* fontIDs, int* outStates) {
  return EntryGuard::RunInSession(GetPluginFacadeInstance(), [&](Session& session) -> ErrCode {
    if (outStates == nullptr && count != 0) return CoreErrorCodes::kNullPointer;
    ClientMessage request;
    if (const ErrCode code = EntryGuard::ReadIDs(
            fontIDs, count, *request.mutable_client_activation_states()->mutable_font_ids())) {
      return code;
    }
    Connection::Incoming reply;
    if (const ErrCode code =
            EntryGuard::Ask(session, request, reply, &ServerMessage::has_client_activation_states)) {
      if (!EntryGuard::IsUnreachable(code)) return code;
      // What this process holds it must be able to give back once the agent is there again.
      std::transform(fontIDs, fontIDs + count, outStates,
                     [](unsigned int id) { return ClientLibrary::Get().Own().Holds(id) ? 1 : 0; });
      return CoreErrorCodes::kSuccess;
    }
    const auto& answer = reply.message.client_activation_states();
    if (static_cast<unsigned long>(answer.activated_size()) != count) {
      return GKVMessageDataHandler::kInvalidMessage;
    }
    for (int i = 0; i < answer.activated_size(); ++i) outStates[i] = answer.activated(i) ? 1 : 0;
    return CoreErrorCodes::kSuccess;
  });
}

ErrCode SaveDocumentFonts(FacadeRef facade, const char* path, const char* hostDisplayName,
                          const char* hostCategory, CFArrayRef fonts) {
  return EntryGuard::RunInSession(facade, [&](Session& session) -> ErrCode {
    ClientMessage request;
    auto& body = *request.mutable_save_document_fonts();
    if (const ErrCode code = EntryGuard::ReadText(path, *body.mutable_path())) return code;
    if (hostDisplayName != nullptr) {
      const ErrCode code = EntryGuard::ReadText(hostDisplayName, *body.mutable_host_display_name());
      if (code != CoreErrorCodes::kSuccess) return code;
    }
    if (hostCategory != nullptr) {
      const ErrCode code = EntryGuard::ReadText(hostCategory, *body.mutable_host_category());
      if (code != CoreErrorCodes::kSuccess) return code;
    }
    for (const auto& record : ToVector<CFDictionaryRef>(dynamicCF<CFArrayRef>(fonts))) {
      if (auto identity = FontRecords::ReadIdentity(record.get())) *body.add_fonts() = std::move(*identity);
    }
    Connection::Incoming reply;
    return session.Call(request, reply);
  });
}
