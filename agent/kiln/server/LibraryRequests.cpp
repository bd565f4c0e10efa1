#include "kiln/server/LibraryRequests.h"

#include <algorithm>
#include <utility>

#include "kiln/fonts/LibraryImport.h"
#include "kiln/server/RequestLimits.h"
#include "protocol/ErrorCodes.h"

namespace kiln {
namespace {

constexpr uint32_t kMostNames = 100000;
constexpr uint32_t kFontsPerPage = 5000;

std::string NameOf(const std::string& path) {
  return path.substr(path.rfind('/') + 1);
}

}  // namespace

Handling LibraryRequests::Handle(const std::shared_ptr<Connection>& connection,
                                 const wire::ClientMessage& message, wire::ServerMessage& reply) {
  switch (message.body_case()) {
    case wire::ClientMessage::kFontInfo:
      reply.set_error(FontInfo(*connection, message.font_info(), *reply.mutable_font_info()));
      return Handling::kDone;
    case wire::ClientMessage::kFontsByName:
      FontsByName(*connection, message.fonts_by_name(), *reply.mutable_fonts_by_name());
      return Handling::kDone;
    case wire::ClientMessage::kListFonts:
      ListFonts(*connection, message.list_fonts(), *reply.mutable_list_fonts());
      return Handling::kDone;
    case wire::ClientMessage::kListActivations:
      reply.mutable_list_activations();  // also without any
      for (wire::Activation& activation : mState.library->activations.List()) {
        *reply.mutable_list_activations()->add_activations() = std::move(activation);
      }
      return Handling::kDone;
    case wire::ClientMessage::kSaveDocumentFonts:
      reply.set_error(mState.library->documents.Save(message.save_document_fonts()));
      return Handling::kDone;
    case wire::ClientMessage::kAddFiles:
      reply.set_error(AddFiles(connection, message.id(), message.add_files()));
      return reply.error() == codes::kSuccess ? Handling::kLater : Handling::kDone;
    default:
      return Handling::kNotMine;
  }
}

uint32_t LibraryRequests::FontInfo(Connection& connection, const wire::FontInfoRequest& request,
                                   wire::FontInfoReply& reply) {
  std::optional<FontRow> row =
      mState.library->fonts.Load(request.font_id(), WorkgroupScope(request.workgroup_ids()));
  if (!row) return codes::kNotFound;
  row->font.set_state(mState.library->book.StateFor(*row, connection.clientID));
  *reply.mutable_font() = std::move(row->font);
  return codes::kSuccess;
}

void LibraryRequests::FontsByName(Connection& connection, const wire::FontsByNameRequest& request,
                                  wire::FontsByNameReply& reply) {
  FontStore& fonts = mState.library->fonts;
  const std::vector<uint32_t> ids = request.type() == wire::NAME_FAMILY
                                        ? fonts.WithFamily(request.name())
                                        : fonts.WithPostScriptName(request.name());
  const WorkgroupScope scope(request.workgroup_ids());
  const std::vector<FontRow> ranked =
      mState.library->matcher.Ranked(connection.clientID, ids, scope, nullptr);
  const uint32_t limit = request.limit() == 0 ? kMostNames : std::min(request.limit(), kMostNames);
  for (size_t i = 0; i < ranked.size() && i < limit; ++i) reply.add_font_ids(ranked[i].font.id());
  reply.set_total(static_cast<uint32_t>(ranked.size()));
}

void LibraryRequests::ListFonts(Connection& connection, const wire::ListFontsRequest& request,
                                wire::ListFontsReply& reply) {
  FontLibrary& library = *mState.library;
  const WorkgroupScope scope(request.workgroup_ids());
  const uint32_t limit = request.limit() == 0 ? kFontsPerPage : std::min(request.limit(), kFontsPerPage);
  const std::vector<uint32_t> ids = library.fonts.After(request.after_id(), limit + 1, scope);
  for (const uint32_t id : ids) {
    if (static_cast<uint32_t>(reply.fonts_size()) == limit) {
      reply.set_more(true);
      return;
    }
    std::optional<FontRow> row = library.fonts.Load(id, scope);
    if (!row) continue;
    row->font.set_state(library.book.StateFor(*row, connection.clientID));
    *reply.add_fonts() = std::move(row->font);
  }
}

uint32_t LibraryRequests::AddFiles(const std::shared_ptr<Connection>& connection, uint32_t requestID,
                                   const wire::AddFilesRequest& request) {
  const uint32_t workgroup = request.workgroup_id() == 0 ? kFontLibraryWorkgroup : request.workgroup_id();
  const std::optional<wire::WorkgroupType> type = mState.library->workgroups.TypeOf(workgroup);
  if (!type) return codes::kWorkgroupNotFound;
  if (*type != wire::WORKGROUP_LOCAL) return codes::kCannotAddFontsToWorkgroup;
  std::vector<std::string> paths;
  for (const std::string& path : request.paths()) {
    if (!IsPath(path)) return codes::kInvalidPath;
    paths.push_back(path);
  }
  // Ended by its holder, behind the reply.
  const auto run =
      std::make_shared<std::unique_ptr<ReplicationBoard::Run>>(mState.sources->replications.Begin(
          wire::REPLICATION_INCREMENTAL, paths.empty() ? "" : NameOf(paths[0])));
  // A client that leaves doesn't end its import.
  const auto progress = [weak = std::weak_ptr<Connection>(connection), requestID, run](const auto& made) {
    const int count = made.results_size();
    if (*run)
      (*run)->Progress(made.done(), made.total(), count > 0 ? NameOf(made.results(count - 1).path()) : "");
    const std::shared_ptr<Connection> client = weak.lock();
    if (!client) return;
    wire::ServerMessage message;
    message.set_reply_to(requestID);
    *message.mutable_progress() = made;
    client->Send(message);
  };
  const auto done = [this, weak = std::weak_ptr<Connection>(connection), requestID, run](
                        const wire::AddFilesReply& totals, const std::vector<uint32_t>& newFonts) {
    mState.log.Print("Files added: %u new, %u known, %u failed", totals.files_added(), totals.files_known(),
                     totals.files_failed());
    if (const std::shared_ptr<Connection> client = weak.lock()) {
      wire::ServerMessage message;
      message.set_reply_to(requestID);
      *message.mutable_add_files() = totals;
      client->Send(message);
    }
    run->reset();
    mState.sources->services.TellLibraryChanged(newFonts);
  };
  std::make_shared<LibraryImport>(mState.context, *mState.library, mState.readers, workgroup, progress, done)
      ->Start(paths);
  return codes::kSuccess;
}

}  // namespace kiln
