#include "kiln/server/ActivationRequests.h"

#include <utility>

#include "kiln/server/RequestIDs.h"
#include "protocol/ErrorCodes.h"

namespace kiln {

bool ActivationRequests::Handle(Connection& connection, const wire::ClientMessage& message,
                                wire::ServerMessage& reply, ActivationChange& change) {
  FontLibrary& library = *mState.library;
  switch (message.body_case()) {
    case wire::ClientMessage::kActivateDocumentFonts: {
      const wire::ActivateDocumentFontsRequest& request = message.activate_document_fonts();
      wire::ActivateDocumentFontsReply& body = *reply.mutable_activate_document_fonts();
      reply.set_error(library.matcher.Activate(connection.clientID, request, body, change));
      mState.log.Print("'%s': %d fonts, %d matched, %d problems, code 0x%08x",
                       request.document_path().c_str(), request.fonts_size(), body.matched_size(),
                       body.problems_size(), reply.error());
      return true;
    }
    case wire::ClientMessage::kActivateFonts:
      reply.set_error(
          Activate(connection, message.activate_fonts(), *reply.mutable_activate_fonts(), change));
      return true;
    case wire::ClientMessage::kDeactivateFonts:
      reply.set_error(
          Deactivate(connection, message.deactivate_fonts(), *reply.mutable_deactivate_fonts(), change));
      return true;
    case wire::ClientMessage::kClientActivationStates: {
      reply.mutable_client_activation_states();  // also without any
      const std::span<const uint32_t> ids = IDs(message.client_activation_states().font_ids());
      for (const bool state : library.book.ClientStates(connection.clientID, ids)) {
        reply.mutable_client_activation_states()->add_activated(state);
      }
      return true;
    }
    case wire::ClientMessage::kFontIsActivated: {
      reply.mutable_font_is_activated();
      const Transaction reading(*library.database);
      for (const uint32_t id : message.font_is_activated().font_ids()) {
        const std::optional<FontRow> row = library.fonts.Load(id);
        reply.mutable_font_is_activated()->add_states(row ? library.book.StateFor(*row, connection.clientID)
                                                          : wire::ACTIVATION_INACTIVE);
      }
      return true;
    }
    case wire::ClientMessage::kSetCompliance: {
      const wire::SetComplianceRequest& request = message.set_compliance();
      reply.set_error(
          library.rights.SetRefused(request.workgroup_id(), IDs(request.font_ids()), request.refused()));
      return true;
    }
    case wire::ClientMessage::kFontConflicts: {
      reply.mutable_font_conflicts();
      const Transaction reading(*library.database);
      for (const uint32_t id : message.font_conflicts().font_ids()) {
        reply.mutable_font_conflicts()->add_conflicting_ids(library.activations.ConflictOf(id));
      }
      return true;
    }
    case wire::ClientMessage::kFamilyFonts:
      reply.set_error(FamilyFonts(connection, message.family_fonts(), *reply.mutable_family_fonts()));
      return true;
    default:
      return false;
  }
}

uint32_t ActivationRequests::FamilyFonts(Connection& connection, const wire::FamilyFontsRequest& request,
                                         wire::FamilyFontsReply& reply) {
  FontLibrary& library = *mState.library;
  const std::optional<FontRow> asked = library.fonts.Load(request.font_id());
  if (!asked) return codes::kNotFound;
  const WorkgroupScope scope(request.workgroup_ids());
  for (const uint32_t id : library.fonts.InFamilyGroup(asked->font.family_group_id())) {
    std::optional<FontRow> row = library.fonts.Load(id, scope);
    if (!row) continue;
    row->font.set_state(library.book.StateFor(*row, connection.clientID));
    *reply.add_fonts() = std::move(row->font);
  }
  return codes::kSuccess;
}

uint32_t ActivationRequests::Activate(Connection& connection, const wire::ActivateFontsRequest& request,
                                      wire::ActivateFontsReply& reply, ActivationChange& change) {
  if (!wire::ActivationMode_IsValid(request.mode())) return codes::kInvalidParam;
  ActivationBook::ActivateResult result;
  const uint32_t error =
      mState.library->book.Activate(connection.clientID, IDs(request.font_ids()), {}, request.mode(), result);
  if (error != codes::kSuccess) return error;
  for (const auto& [id, reason] : result.failures) {
    const bool refused = reason == codes::kLicenseComplianceViolation;
    refused ? reply.add_refused_ids(id) : reply.add_failed_ids(id);
  }
  for (FontRow& row : result.fonts) *reply.add_fonts() = std::move(row.font);
  change = std::move(result.change);
  return reply.refused_ids().empty() ? codes::kSuccess : codes::kLicenseComplianceViolation;
}

uint32_t ActivationRequests::Deactivate(Connection& connection, const wire::DeactivateFontsRequest& request,
                                        wire::DeactivateFontsReply& reply, ActivationChange& change) {
  ActivationBook::DeactivateResult result;
  const uint32_t error = mState.library->book.Deactivate(connection.clientID, IDs(request.font_ids()),
                                                         request.by_hand(), result);
  if (error != codes::kSuccess) return error;
  for (const uint32_t id : result.released) reply.add_released_ids(id);
  for (const wire::FontPlace& place : result.change.deactivated) reply.add_deactivated_ids(place.font_id());
  change = std::move(result.change);
  return codes::kSuccess;
}

}  // namespace kiln
