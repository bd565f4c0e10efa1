#pragma once

#include <optional>
#include <string>
#include <vector>

#include "kiln/sources/FolderSync.h"
#include "kiln/sources/ServerConfiguration.h"

namespace kiln {

struct FontLibrary;

/// What the folder of a font server shows.
struct ServerSight {
  /// Nothing when the folder or its "server.conf" can't be read.
  static std::optional<ServerSight> Look(const std::string& server);

  ServerConfiguration configuration;
  std::vector<std::string> subfolders;  ///< those that can be workgroups, by name

  bool operator==(const ServerSight&) const = default;
};

/// The workgroups that are made of a font server. Writing calls belong into a transaction of the caller's;
/// false means that the database failed.
class ServerWorkgroups {
 public:
  explicit ServerWorkgroups(FontLibrary& library) : mLibrary(library) {}

  /// Makes the workgroups what they are for a user. Those of other servers are hidden; one that has gone at
  /// this server goes here, too.
  bool Write(const ServerSight& sight, const std::string& server, const std::string& user);
  /// Nobody is logged in: hides the servers' and shows the user's own.
  bool Hide();

  /// Where the fonts of those that the user sees come from.
  std::vector<FolderSource> Sources(const ServerSight& sight, const std::string& server,
                                    const std::string& user);

 private:
  FontLibrary& mLibrary;
};

}  // namespace kiln
