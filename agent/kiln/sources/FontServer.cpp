#include "kiln/sources/FontServer.h"

#include <pwd.h>
#include <unistd.h>

#include <filesystem>
#include <utility>

#include "kiln/fonts/FontLibrary.h"
#include "kiln/sources/OrphanSweep.h"
#include "kiln/system/BoundedLog.h"
#include "kiln/system/GivenName.h"
#include "protocol/ErrorCodes.h"

namespace kiln {
namespace {

constexpr const char* kServes = "server.edition";
constexpr const char* kFolder = "server.folder";
constexpr const char* kUser = "server.user";
constexpr const char* kLoggedIn = "server.loggedIn";
constexpr const char* kAcross = "server.across";
constexpr const char* kLocal = "server.local";
constexpr const char* kType = "server.type";
constexpr const char* kTakenOver = "server.takenOver";  // the server whose fonts were all taken over once

// What a file server doesn't tell of: whether it is there, and what other machines change.
constexpr std::chrono::seconds kBetweenChecks{20};
constexpr std::chrono::minutes kBetweenLooks{5};

std::string OwnUser() {
  const passwd* entry = getpwuid(getuid());
  return entry && entry->pw_name ? entry->pw_name : std::to_string(getuid());
}

std::string Normal(const std::string& folder) {
  if (folder.empty() || folder.front() != '/') return "";
  std::string normal = std::filesystem::path(folder).lexically_normal().string();
  while (normal.size() > 1 && normal.back() == '/') normal.pop_back();
  return normal;
}

}  // namespace

FontServer::FontServer(const LibraryServices& services)
    : mServices(services),
      mFiles(services, wire::REPLICATION_FONT_SERVER),
      mWatch(services.context, FolderWatch::kContents | FolderWatch::kFolderItself, [this] { Check(); }),
      mTimer(services.context) {}

void FontServer::Resume() {
  if (Serves()) Check();
}

bool FontServer::IsStandalone() const {
  return !mServices.library.settings.Is(kServes);
}

bool FontServer::Serves() const {
  return !IsStandalone() && mServices.library.settings.Is(kLoggedIn);
}

bool FontServer::IsLoggedIn() const {
  return IsStandalone() || Serves();
}

bool FontServer::MayActivateAcross() const {
  return !Serves() || mServices.library.settings.Is(kAcross);
}

bool FontServer::ListsLocalLibraries() const {
  return !Serves() || mServices.library.settings.Is(kLocal);
}

int32_t FontServer::ServerType() const {
  const std::string type = mServices.library.settings.Get(kType);
  return IsStandalone() || type.empty() ? 1 : std::atoi(type.c_str());
}

void FontServer::Describe(wire::ServerStateReply& reply) const {
  const std::string server = mServices.library.settings.Get(kFolder);
  reply.set_standalone(IsStandalone());
  reply.set_server(server);
  reply.set_user(mServices.library.settings.Get(kUser));
  reply.set_logged_in(IsLoggedIn());
  reply.set_online(IsStandalone() || (Serves() ? mOnline : ServerConfiguration::Read(server).has_value()));
  reply.set_server_type(ServerType());
}

// ---------------------------------------------------------------------------------------------------------------
// Events
// ---------------------------------------------------------------------------------------------------------------

FontServer::Listing FontServer::List() const {
  Listing listing;
  for (const wire::Workgroup& one : mServices.library.workgroups.Listed()) {
    listing.workgroups.emplace_back(one.id(), one.name(), static_cast<int>(one.type()));
  }
  listing.setEntries = mServices.CountSetEntries();
  return listing;
}

void FontServer::TellListing(const Listing& before) {
  const Listing now = List();
  if (now.workgroups != before.workgroups) mServices.TellWorkgroupsChanged();
  if (now.setEntries != before.setEntries) mServices.TellSetsChanged();
}

void FontServer::TellPermissions() {
  wire::ServerMessage event;
  event.mutable_permissions_changed();
  mServices.broadcast(event);
}

void FontServer::TellLogIn() {
  wire::ServerMessage event;
  event.mutable_log_in_state()->set_logged_in(IsLoggedIn());
  event.mutable_log_in_state()->set_server_type(ServerType());
  mServices.broadcast(event);
}

void FontServer::TellOnline(bool online) {
  if (std::exchange(mOnline, online) == online) return;
  mServices.log.Print("The font server is %s", online ? "there" : "out of reach");
  wire::ServerMessage event;
  event.mutable_online_state()->set_online(online);
  mServices.broadcast(event);
}

// ---------------------------------------------------------------------------------------------------------------
// Log-in and log-out
// ---------------------------------------------------------------------------------------------------------------

uint32_t FontServer::LogIn(const std::string& folder, const std::string& wantedUser) {
  if (Serves()) return codes::kAlreadyLoggedIn;
  const std::string server = Normal(folder);
  const std::string user = wantedUser.empty() ? OwnUser() : wantedUser;
  const std::optional<ServerSight> sight = server.empty() ? std::nullopt : ServerSight::Look(server);
  if (!sight) return codes::kFailedToConnect;
  if (!IsGivenName(user) || !sight->configuration.Knows(user)) return codes::kSignInFailed;
  const Listing before = List();
  if (const uint32_t error = Write(*sight, server, user)) return error;
  mServices.log.Print("'%s' has logged in to the font server '%s'", user.c_str(), server.c_str());
  TellOnline(true);
  TellLogIn();
  TellPermissions();
  TellListing(before);
  TakeUp(true);
  return codes::kSuccess;
}

uint32_t FontServer::LogOut(bool leave) {
  if (!Serves() && !leave) return codes::kNotLoggedIn;
  if (IsStandalone()) return codes::kSuccess;
  const Listing before = List();
  FontLibrary& library = mServices.library;
  Transaction transaction(*library.database);
  const bool fine = transaction.Began() && ServerWorkgroups(library).Hide() &&
                    library.settings.PutFlag(kLoggedIn, false) &&
                    (!leave || library.settings.PutFlag(kServes, false));
  if (!fine) return library.database->Error();
  if (const uint32_t error = transaction.Commit()) return error;
  mServices.log.Print(leave ? "Kiln stands alone now" : "Logged out from the font server");
  mApplied.reset();
  mFiles.SetSources({});
  mWatch.Clear();
  mTimer.cancel();
  if (leave) TellOnline(true);
  TellLogIn();
  TellPermissions();
  TellListing(before);
  return codes::kSuccess;
}

uint32_t FontServer::Write(const ServerSight& sight, const std::string& server, const std::string& user) {
  FontLibrary& library = mServices.library;
  const ServerConfiguration& configuration = sight.configuration;
  SettingStore& settings = library.settings;
  Transaction transaction(*library.database);
  const bool fine = transaction.Began() && settings.PutFlag(kServes, true) &&
                    settings.PutFlag(kLoggedIn, true) && settings.Put(kFolder, server) &&
                    settings.Put(kUser, user) &&
                    settings.PutFlag(kAcross, configuration.MayActivateAcross(user)) &&
                    settings.PutFlag(kLocal, configuration.ListsLocalLibraries()) &&
                    settings.Put(kType, std::to_string(configuration.ServerType())) &&
                    ServerWorkgroups(library).Write(sight, server, user);
  if (!fine) return library.database->Error();
  if (const uint32_t error = transaction.Commit()) return error;
  mApplied = sight;
  mServices.sweep.Run();
  return codes::kSuccess;
}

// ---------------------------------------------------------------------------------------------------------------
// Keeping up
// ---------------------------------------------------------------------------------------------------------------

void FontServer::TakeUp(bool announce) {
  const std::string server = mServices.library.settings.Get(kFolder);
  const std::string user = mServices.library.settings.Get(kUser);
  mFiles.SetSources(ServerWorkgroups(mServices.library).Sources(*mApplied, server, user));
  Sync(announce, nullptr);
  CheckLater();
}

void FontServer::Sync(bool announce, FolderSync::Done done) {
  const std::string server = mServices.library.settings.Get(kFolder);
  const bool first = mServices.library.settings.Get(kTakenOver) != server;
  mLastLook = std::chrono::steady_clock::now();
  mFiles.Sync({first ? wire::REPLICATION_BULK : wire::REPLICATION_FONT_SERVER, announce},
              [this, first, server, done = std::move(done)](bool whole) {
                if (first && whole && Serves()) mServices.library.settings.Put(kTakenOver, server);
                if (done) done(whole);
              });
}

void FontServer::Check() {
  if (!Serves()) return;
  const std::string server = mServices.library.settings.Get(kFolder);
  const std::string user = mServices.library.settings.Get(kUser);
  const std::optional<ServerSight> sight = ServerSight::Look(server);
  if (!sight) {
    TellOnline(false);
    return CheckLater();
  }
  if (!sight->configuration.Knows(user)) {
    mServices.log.Print("The font server no longer knows '%s'", user.c_str());
    if (LogOut(false) == codes::kSuccess) return;
  }
  const bool wasOnline = mOnline;
  TellOnline(true);
  const bool changed = !mApplied || *mApplied != *sight;
  if (changed) {
    const bool rules = !mApplied || mApplied->configuration != sight->configuration;
    const Listing before = List();
    if (Write(*sight, server, user) != codes::kSuccess) return CheckLater();
    if (rules) TellPermissions();
    TellListing(before);
  }
  const bool longAgo = std::chrono::steady_clock::now() - mLastLook >= kBetweenLooks;
  if (changed || !wasOnline || longAgo) return TakeUp(false);
  CheckLater();
}

void FontServer::CheckLater() {
  // The folder above shows it when this one comes back.
  const std::string server = mServices.library.settings.Get(kFolder);
  mWatch.Add(server);
  mWatch.Add(std::filesystem::path(server).parent_path().string());
  mTimer.expires_after(kBetweenChecks);
  mTimer.async_wait([this, alive = std::weak_ptr<bool>(mAlive)](auto cancelled) {
    if (!cancelled && !alive.expired()) Check();
  });
}

void FontServer::Rescan(const FolderSync::Done& done) {
  if (Serves()) Check();
  Sync(false, done);
}

}  // namespace kiln
