#pragma once

#include <cstdint>
#include <string>

#include "kiln/sources/FolderLibrary.h"

namespace kiln {

/// The library of Google fonts: the font files of one folder, while it is switched on. Its workgroup is made
/// when it is first used, and hidden while it is off; its fonts stay in the vault.
class GoogleLibrary {
 public:
  explicit GoogleLibrary(const LibraryServices& services);

  /// Goes on as the last Kiln left it.
  void Resume();

  /// As Kiln.proto tells with SetGoogleRequest, or the database's error. With an error nothing has changed.
  uint32_t Set(bool enabled, const std::string& folder);
  void Describe(wire::GoogleStateReply& reply) const;

  /// Reads the folder anew. \param done  Called once, not from within this call; also when it is off.
  void Rescan(const FolderSync::Done& done);

 private:
  std::string Folder() const;
  uint32_t Write(bool enabled, const std::string& folder);
  void Apply();

  const LibraryServices& mServices;
  FolderLibrary mFiles;
};

}  // namespace kiln
