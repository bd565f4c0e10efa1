#include "kiln/sources/GoogleLibrary.h"

#include <unistd.h>

#include <filesystem>
#include <optional>
#include <system_error>

#include "kiln/fonts/FontLibrary.h"
#include "protocol/ErrorCodes.h"

namespace kiln {
namespace {

constexpr const char* kEnabled = "google.enabled";
constexpr const char* kFolder = "google.folder";
constexpr const char* kName = "Google Fonts";

bool IsReadable(const std::string& folder) {
  std::error_code ignored;
  return std::filesystem::is_directory(folder, ignored) && access(folder.c_str(), R_OK | X_OK) == 0;
}

std::optional<uint32_t> FindWorkgroup(FontLibrary& library) {
  for (const WorkgroupStore::FromFolder& workgroup : library.workgroups.FromFolders()) {
    if (workgroup.type == wire::WORKGROUP_GOOGLE) return workgroup.id;
  }
  return std::nullopt;
}

}  // namespace

GoogleLibrary::GoogleLibrary(const LibraryServices& services)
    : mServices(services), mFiles(services, wire::REPLICATION_GOOGLE) {}

void GoogleLibrary::Resume() {
  Apply();
  if (mServices.library.settings.Is(kEnabled)) mFiles.Sync({wire::REPLICATION_GOOGLE, false}, nullptr);
}

std::string GoogleLibrary::Folder() const {
  return mServices.library.settings.Get(kFolder);
}

void GoogleLibrary::Describe(wire::GoogleStateReply& reply) const {
  reply.set_enabled(mServices.library.settings.Is(kEnabled));
  reply.set_folder(Folder());
  reply.set_accessible(IsReadable(Folder()));
}

uint32_t GoogleLibrary::Write(bool enabled, const std::string& folder) {
  FontLibrary& library = mServices.library;
  Transaction transaction(*library.database);
  if (!transaction.Began()) return library.database->Error();
  const std::optional<uint32_t> known = FindWorkgroup(library);
  uint32_t id = known.value_or(0);
  bool fine = true;
  if (id == 0 && enabled) {
    id = library.workgroups.Add(kName, wire::WORKGROUP_GOOGLE, folder);
    fine = id != 0;
  }
  if (id != 0) fine = fine && library.workgroups.SetFolder(id, folder);
  if (id != 0) fine = fine && library.workgroups.SetHidden(id, !enabled);
  fine = fine && library.settings.Put(kFolder, folder) && library.settings.PutFlag(kEnabled, enabled);
  return fine ? transaction.Commit() : library.database->Error();
}

uint32_t GoogleLibrary::Set(bool enabled, const std::string& wanted) {
  const std::string folder = wanted.empty() || !enabled ? Folder() : wanted;
  if (enabled && (folder.empty() || folder.front() != '/')) return codes::kInvalidParam;
  if (enabled && !IsReadable(folder)) return codes::kDirectoryNotFound;
  const bool before = mServices.library.settings.Is(kEnabled);
  const int64_t setEntries = mServices.CountSetEntries();
  if (const uint32_t error = Write(enabled, folder)) return error;
  if (enabled != before) {
    wire::ServerMessage switched;
    switched.mutable_google_enabled()->set_enabled(enabled);
    mServices.broadcast(switched);
    mServices.TellWorkgroupsChanged();
    if (mServices.CountSetEntries() != setEntries) mServices.TellSetsChanged();
  }
  Apply();
  if (enabled) mFiles.Sync({wire::REPLICATION_GOOGLE, true}, nullptr);
  return codes::kSuccess;
}

void GoogleLibrary::Apply() {
  const std::optional<uint32_t> workgroup = FindWorkgroup(mServices.library);
  std::vector<FolderSource> sources;
  if (workgroup && mServices.library.settings.Is(kEnabled)) sources.push_back({*workgroup, Folder(), {}});
  mFiles.SetSources(std::move(sources));
}

void GoogleLibrary::Rescan(const FolderSync::Done& done) {
  mFiles.Sync({wire::REPLICATION_GOOGLE, false}, done);
}

}  // namespace kiln
