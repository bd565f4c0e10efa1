#include "kiln/server/SetRequests.h"

#include <map>
#include <utility>

#include "kiln/server/RequestIDs.h"
#include "kiln/server/RequestLimits.h"
#include "protocol/ErrorCodes.h"

namespace kiln {
namespace {

constexpr size_t kNoFile = SIZE_MAX;

// A font of a request and its file's place in the export.
struct Wanted {
  uint32_t fontID = 0;
  size_t file = kNoFile;
};

// Fills in what came of each font, and says what came of the whole.
uint32_t Tell(const std::vector<Wanted>& fonts, const std::vector<FontExport::File>& files,
              wire::ExportFontsReply& reply) {
  bool any = false;
  bool failed = false;
  bool diskFull = false;
  for (const Wanted& font : fonts) {
    wire::ExportedFont& exported = *reply.add_fonts();
    exported.set_font_id(font.fontID);
    exported.set_error(font.file == kNoFile ? codes::kInvalidFontIDs : files[font.file].error);
    any = any || exported.error() == codes::kSuccess;
    failed = failed || exported.error() != codes::kSuccess;
    diskFull = diskFull || exported.error() == codes::kDiskFull;
    if (exported.error() == codes::kSuccess) exported.set_path(files[font.file].copy);
  }
  if (diskFull) return codes::kDiskFull;
  if (!any) return codes::kNoAvailableFontsToExport;
  return failed ? codes::kCouldNotCopyFile : codes::kSuccess;
}

}  // namespace

SetRequests::~SetRequests() {
  for (const std::weak_ptr<FontExport>& one : mExports) {
    if (const std::shared_ptr<FontExport> running = one.lock()) running->Stop();
  }
  mWorker.join();
}

Handling SetRequests::Handle(const std::shared_ptr<Connection>& connection,
                             const wire::ClientMessage& message, wire::ServerMessage& reply) {
  SetStore& sets = mState.library->sets;
  switch (message.body_case()) {
    case wire::ClientMessage::kCreateSet: {
      const wire::CreateSetRequest& request = message.create_set();
      uint32_t id = 0;
      reply.set_error(sets.Create(request.name(), request.workgroup_id(), IDs(request.font_ids()), id));
      reply.mutable_create_set()->set_set_id(id);
      break;
    }
    case wire::ClientMessage::kAddFontsToSets: {
      const wire::AddFontsToSetsRequest& request = message.add_fonts_to_sets();
      reply.set_error(sets.AddFonts(IDs(request.set_ids()), IDs(request.font_ids())));
      break;
    }
    case wire::ClientMessage::kDeleteSet:
      reply.set_error(sets.Delete(message.delete_set().set_id()));
      break;
    case wire::ClientMessage::kListSets:
      reply.mutable_list_sets();  // also without any
      for (wire::FontSet& set : sets.List(WorkgroupScope(message.list_sets().workgroup_ids()))) {
        *reply.mutable_list_sets()->add_sets() = std::move(set);
      }
      return Handling::kDone;
    case wire::ClientMessage::kExportFonts:
      reply.set_error(ExportFonts(connection, message.id(), message.export_fonts()));
      return reply.error() == codes::kSuccess ? Handling::kLater : Handling::kDone;
    case wire::ClientMessage::kCanExportFonts: {
      bool allowed = true;
      for (const uint32_t font : message.can_export_fonts().font_ids()) allowed = allowed && MayExport(font);
      reply.mutable_can_export_fonts()->set_allowed(allowed);
      return Handling::kDone;
    }
    default:
      return Handling::kNotMine;
  }
  if (reply.error() == codes::kSuccess) AnnounceSets();
  return Handling::kDone;
}

void SetRequests::AnnounceSets() {
  wire::ServerMessage event;
  event.mutable_sets_changed();
  mState.clients.Broadcast(event);
}

// An ID that isn't known is nobody's to forbid: the export tells of it.
bool SetRequests::MayExport(uint32_t fontID) {
  return mState.library->rights.MayExport(fontID) || !mState.library->fonts.Load(fontID);
}

uint32_t SetRequests::ExportFonts(const std::shared_ptr<Connection>& connection, uint32_t requestID,
                                  const wire::ExportFontsRequest& request) {
  const std::string& destination = request.destination();
  if (!IsPath(destination)) return codes::kInvalidPath;
  if (request.font_ids().empty()) return codes::kNoFontsToExport;
  std::vector<Wanted> fonts;
  std::vector<FontExport::File> files;
  std::map<int64_t, size_t> places;  // by the file's ID
  for (const uint32_t id : request.font_ids()) {
    fonts.push_back({id, kNoFile});
    const std::optional<FontRow> row = mState.library->fonts.Load(id);
    if (!row) continue;
    if (!mState.library->rights.MayExport(id)) return codes::kNotGrantedPermissionToExportFonts;
    const auto [place, isNew] = places.emplace(row->fileID, files.size());
    fonts.back().file = place->second;
    if (!isNew) continue;
    FontExport::File& file = files.emplace_back();
    file.source = row->font.path();
    file.name = row->font.outline_file_name();
    if (row->font.in_vault()) file.size = row->font.outline_file_size();
    file.withMetrics = row->font.kind() == wire::FONT_KIND_POSTSCRIPT;
  }
  const auto total = static_cast<uint32_t>(files.size());
  const auto progress = [weak = std::weak_ptr<Connection>(connection), requestID, total](size_t done) {
    const std::shared_ptr<Connection> client = weak.lock();
    if (!client) return false;
    wire::ServerMessage message;
    message.set_reply_to(requestID);
    message.mutable_task_progress()->set_done(static_cast<uint32_t>(done));
    message.mutable_task_progress()->set_total(total);
    client->Send(message);
    return true;
  };
  const auto done = [this, weak = std::weak_ptr<Connection>(connection), requestID, destination, fonts](
                        uint32_t error, const std::vector<FontExport::File>& copied) {
    wire::ServerMessage message;
    message.set_reply_to(requestID);
    message.set_error(error != codes::kSuccess ? error
                                               : Tell(fonts, copied, *message.mutable_export_fonts()));
    mState.log.Print("Exported %zu files to '%s', code 0x%08x", copied.size(), destination.c_str(),
                     message.error());
    if (const std::shared_ptr<Connection> client = weak.lock()) client->Send(message);
  };
  std::erase_if(mExports, [](const std::weak_ptr<FontExport>& one) { return one.expired(); });
  const auto run =
      std::make_shared<FontExport>(mState.context, destination, std::move(files), progress, done);
  mExports.push_back(run);
  run->Start(mWorker);
  return codes::kSuccess;
}

}  // namespace kiln
