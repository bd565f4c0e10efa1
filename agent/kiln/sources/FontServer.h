#pragma once

#include <boost/asio/steady_timer.hpp>
#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <tuple>
#include <vector>

#include "kiln/fonts/FolderWatch.h"
#include "kiln/sources/FolderLibrary.h"
#include "kiln/sources/ServerWorkgroups.h"

namespace kiln {

/// The font server that this Kiln works with, if it doesn't stand alone.
///
/// A font server is a folder, as a file server shows it to everybody. Each folder directly in it is a
/// workgroup of that name (1,000 at most), with the font files in it and below; folders whose name begins
/// with "." are none. Beside them lies "server.conf": lines "key = value", "#" begins a comment, keys may
/// be written in any case. The keys, and what holds without them:
///
///     users = anna, ben                      who may log in (*)
///     across-workgroups = anna               who may activate from all workgroups together (*)
///     local-libraries = no                   whether users see libraries of their own (yes)
///     server-type = 3                        what plug-ins are told; 3: pass over log-in, log-out (1)
///     workgroup.Ads.users = anna             who sees the workgroup "Ads" (*)
///     workgroup.Ads.export = ben             who may copy its fonts out of the library (*)
///     workgroup.Ads.refused = Foo-Bold       fonts that nobody may activate, by PostScript name ()
///     workgroup.Ads.owner = anna             makes it the personal workgroup of one user ()
///
/// Lists are separated by commas; "*" is everybody, an empty list is nobody. A name that ends in a letter
/// beyond ASCII wants a comma behind it, since such bytes are stripped from a line's end. Whoever is taken
/// out of `users` is logged out.
///
/// Life: standing alone; LogIn() from there or from logged out; LogOut() to logged out or to standing alone.
/// All of it survives Kiln. While logged in, the server is online when "server.conf" can be read, and the
/// workgroups are as it says; offline they are as they were last.
class FontServer {
 public:
  explicit FontServer(const LibraryServices& services);

  /// Goes on as the last Kiln left it.
  void Resume();

  /// As Kiln.proto tells, or the database's error. With an error nothing has changed.
  uint32_t LogIn(const std::string& server, const std::string& user);
  uint32_t LogOut(bool leave);

  bool IsStandalone() const;
  /// True also when standing alone.
  bool IsLoggedIn() const;
  void Describe(wire::ServerStateReply& reply) const;
  /// May the user activate from all workgroups together?
  bool MayActivateAcross() const;
  /// May the user have libraries of his own now?
  bool ListsLocalLibraries() const;

  /// Reads all anew. \param done  Called once, not from within this call; also without a server.
  void Rescan(const FolderSync::Done& done);

 private:
  struct Listing {
    std::vector<std::tuple<uint32_t, std::string, int>> workgroups;
    int64_t setEntries = 0;
  };

  bool Serves() const;
  int32_t ServerType() const;
  Listing List() const;
  void TellListing(const Listing& before);
  void TellPermissions();
  void TellLogIn();
  void TellOnline(bool online);
  uint32_t Write(const ServerSight& sight, const std::string& server, const std::string& user);
  void TakeUp(bool announce);
  void Sync(bool announce, FolderSync::Done done);
  void Check();
  void CheckLater();

  const LibraryServices& mServices;
  FolderLibrary mFiles;
  FolderWatch mWatch;
  boost::asio::steady_timer mTimer;
  std::chrono::steady_clock::time_point mLastLook;
  std::optional<ServerSight> mApplied;  // as the workgroups stand now
  bool mOnline = true;                  // as the clients were told
  std::shared_ptr<bool> mAlive = std::make_shared<bool>(true);
};

}  // namespace kiln
