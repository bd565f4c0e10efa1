#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "kiln/store/FileState.h"
#include "kiln/store/Statement.h"
#include "kiln/system/KilnPaths.h"

namespace kiln {

class Database;

/// What is noted of one file of the vault.
struct VaultFile {
  int64_t id = 0;
  std::string path;
  std::string name;  ///< as it was when added
  std::string link;  ///< its place in the link folder; empty for none
  uint64_t size = 0;
  FileState state = FileState::kSound;
};

/// The rows of the vault's files, for those who look whether they are there.
class VaultFileStore {
 public:
  VaultFileStore(Database& database, const KilnPaths& paths);

  /// Files behind an ID, by ascending ID, up to `limit` of them.
  std::vector<VaultFile> After(int64_t id, uint32_t limit);
  /// Files whose content's digest begins so: one of them, or those of one folder.
  std::vector<VaultFile> WithHash(const std::string& beginning);
  uint32_t Count();
  /// Fonts whose file was found so, by ascending ID.
  std::vector<uint32_t> FontsOfFilesThatAre(FileState state);

 private:
  std::vector<VaultFile> Files(Statement& statement);

  const KilnPaths& mPaths;
  Statement mAfter;
  Statement mWithHash;
  Statement mCount;
  Statement mFontsByState;
};

}  // namespace kiln
