#include "kiln/sources/ServerWorkgroups.h"

#include <algorithm>
#include <filesystem>
#include <map>
#include <system_error>
#include <utility>

#include "kiln/fonts/FontLibrary.h"
#include "kiln/system/GivenName.h"
#include "kiln/system/Utf8.h"

namespace kiln {
namespace {

constexpr size_t kMostWorkgroups = 1000;

bool IsServers(const WorkgroupStore::FromFolder& workgroup) {
  return workgroup.type == wire::WORKGROUP_SERVER || workgroup.type == wire::WORKGROUP_SERVER_PERSONAL;
}

std::string ParentOf(const std::string& folder) {
  return std::filesystem::path(folder).parent_path().string();
}
std::string NameOf(const std::string& folder) {
  return std::filesystem::path(folder).filename().string();
}

// By name. Nothing when the folder can't be read.
std::optional<std::vector<std::string>> Subfolders(const std::string& server) {
  std::vector<std::string> names;
  std::error_code error;
  std::filesystem::directory_iterator entry(server, error);
  for (const std::filesystem::directory_iterator end; !error && entry != end; entry.increment(error)) {
    std::error_code ignored;
    const std::string name = entry->path().filename().string();
    const bool usable = name.front() != '.' && IsUtf8(name) && IsGivenName(name);
    if (usable && entry->is_directory(ignored)) names.push_back(name);
  }
  if (error) return std::nullopt;
  std::sort(names.begin(), names.end());
  if (names.size() > kMostWorkgroups) names.resize(kMostWorkgroups);
  return names;
}

}  // namespace

std::optional<ServerSight> ServerSight::Look(const std::string& server) {
  std::optional<ServerConfiguration> configuration = ServerConfiguration::Read(server);
  std::optional<std::vector<std::string>> subfolders = Subfolders(server);
  if (!configuration || !subfolders) return std::nullopt;
  return ServerSight{std::move(*configuration), std::move(*subfolders)};
}

bool ServerWorkgroups::Write(const ServerSight& sight, const std::string& server, const std::string& user) {
  WorkgroupStore& workgroups = mLibrary.workgroups;
  std::map<std::string, uint32_t> known;
  for (const WorkgroupStore::FromFolder& workgroup : workgroups.FromFolders()) {
    if (IsServers(workgroup)) known[workgroup.folder] = workgroup.id;
  }
  bool fine = true;
  for (const std::string& name : sight.subfolders) {
    const ServerConfiguration::Workgroup rules = sight.configuration.For(name, user);
    std::string folder = server;
    folder.append("/").append(name);
    const auto before = known.find(folder);
    const wire::WorkgroupType type =
        rules.personal ? wire::WORKGROUP_SERVER_PERSONAL : wire::WORKGROUP_SERVER;
    uint32_t id = 0;
    if (before != known.end()) {
      id = before->second;
      known.erase(before);
    } else if (rules.visible) {
      id = workgroups.Add(name, type, folder);
      fine = fine && id != 0;
    }
    if (id == 0) continue;
    fine = fine && workgroups.SetType(id, type) && workgroups.SetHidden(id, !rules.visible) &&
           workgroups.SetExportAllowed(id, rules.exportAllowed) && workgroups.RefuseOnly(id, rules.refused);
  }
  // What is left is another server's, or has been deleted at this one.
  for (const auto& [folder, id] : known) {
    fine = fine && (ParentOf(folder) == server ? workgroups.Remove(id) : workgroups.SetHidden(id, true));
  }
  for (const uint32_t id : workgroups.Local()) {
    fine = fine && workgroups.SetHidden(id, !sight.configuration.ListsLocalLibraries());
  }
  return fine;
}

bool ServerWorkgroups::Hide() {
  WorkgroupStore& workgroups = mLibrary.workgroups;
  bool fine = true;
  for (const WorkgroupStore::FromFolder& workgroup : workgroups.FromFolders()) {
    if (IsServers(workgroup)) fine = fine && workgroups.SetHidden(workgroup.id, true);
  }
  for (const uint32_t id : workgroups.Local()) fine = fine && workgroups.SetHidden(id, false);
  return fine;
}

std::vector<FolderSource> ServerWorkgroups::Sources(const ServerSight& sight, const std::string& server,
                                                    const std::string& user) {
  std::vector<FolderSource> sources;
  for (const WorkgroupStore::FromFolder& workgroup : mLibrary.workgroups.FromFolders()) {
    if (!IsServers(workgroup) || workgroup.hidden || ParentOf(workgroup.folder) != server) continue;
    const std::string name = NameOf(workgroup.folder);
    sources.push_back({workgroup.id, workgroup.folder, sight.configuration.For(name, user).refused});
  }
  return sources;
}

}  // namespace kiln
