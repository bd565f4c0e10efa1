#include "kiln/store/VaultFileStore.h"

#include "kiln/fonts/Vault.h"

namespace kiln {

VaultFileStore::VaultFileStore(Database& database, const KilnPaths& paths)
    : mPaths(paths),
      mAfter(database,
             "SELECT id, hash, extension, name, link, size, state FROM files"
             " WHERE hash IS NOT NULL AND id > ? ORDER BY id LIMIT ?"),
      // Digits of hashes end with "f".
      mWithHash(database,
                "SELECT id, hash, extension, name, link, size, state FROM files"
                " WHERE hash >= ?1 AND hash < ?1 || 'g' ORDER BY id"),
      mCount(database, "SELECT count(*) FROM files WHERE hash IS NOT NULL"),
      mFontsByState(database,
                    "SELECT f.id FROM files i JOIN fonts f ON f.file_id = i.id"
                    " WHERE i.state = ? AND i.hash IS NOT NULL ORDER BY f.id") {}

std::vector<VaultFile> VaultFileStore::Files(Statement& statement) {
  std::vector<VaultFile> files;
  while (statement.Next()) {
    VaultFile& file = files.emplace_back();
    file.id = statement.Number(0);
    file.path = Vault::PathOf(mPaths, statement.Text(1), statement.Text(2));
    file.name = statement.Text(3);
    file.link = statement.Text(4);
    file.size = static_cast<uint64_t>(statement.Number(5));
    file.state = static_cast<FileState>(statement.Number(6));
  }
  return files;
}

std::vector<VaultFile> VaultFileStore::After(int64_t id, uint32_t limit) {
  mAfter.Start(id, limit);
  return Files(mAfter);
}

std::vector<VaultFile> VaultFileStore::WithHash(const std::string& beginning) {
  mWithHash.Start(beginning);
  return Files(mWithHash);
}

uint32_t VaultFileStore::Count() {
  uint32_t count = 0;
  mCount.Start();
  while (mCount.Next()) count = static_cast<uint32_t>(mCount.Number(0));
  return count;
}

std::vector<uint32_t> VaultFileStore::FontsOfFilesThatAre(FileState state) {
  std::vector<uint32_t> fonts;
  mFontsByState.Start(static_cast<int>(state));
  while (mFontsByState.Next()) fonts.push_back(static_cast<uint32_t>(mFontsByState.Number(0)));
  return fonts;
}

}  // namespace kiln
