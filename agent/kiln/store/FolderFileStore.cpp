#include "kiln/store/FolderFileStore.h"

namespace kiln {

FolderFileStore::FolderFileStore(Database& database)
    : mOf(database,
          "SELECT p.path, p.size, CASE WHEN i.state THEN -1 ELSE p.modified END FROM folder_files p"
          " LEFT JOIN files i ON i.id = p.file_id WHERE p.workgroup_id = ?"),
      mPut(database,
           "INSERT INTO folder_files (workgroup_id, path, size, modified, file_id)"
           " VALUES (?, ?, ?, ?, (SELECT file_id FROM fonts WHERE id = ?))"
           " ON CONFLICT (workgroup_id, path) DO UPDATE SET size = excluded.size,"
           " modified = excluded.modified, file_id = excluded.file_id"),
      mRemove(database, "DELETE FROM folder_files WHERE workgroup_id = ? AND path = ?"),
      mTakeOutOthers(
          database,
          "DELETE FROM workgroup_fonts WHERE workgroup_id = ?1 AND NOT EXISTS (SELECT 1 FROM fonts f"
          " JOIN folder_files p ON p.file_id = f.file_id WHERE f.id = workgroup_fonts.font_id"
          " AND p.workgroup_id = ?1) RETURNING font_id") {}

std::map<std::string, FolderFileStore::File> FolderFileStore::Of(uint32_t workgroupID) {
  std::map<std::string, File> files;
  mOf.Start(workgroupID);
  while (mOf.Next()) files[mOf.Text(0)] = {static_cast<uint64_t>(mOf.Number(1)), mOf.Number(2)};
  return files;
}

bool FolderFileStore::Put(uint32_t workgroupID, const std::string& path, const File& file, uint32_t fontID) {
  return mPut.Run(workgroupID, path, file.size, file.modified, fontID);
}

bool FolderFileStore::Remove(uint32_t workgroupID, const std::string& path) {
  return mRemove.Run(workgroupID, path);
}

bool FolderFileStore::TakeOutOthers(uint32_t workgroupID, std::vector<uint32_t>& fontIDs) {
  mTakeOutOthers.Start(workgroupID);
  while (mTakeOutOthers.Next()) fontIDs.push_back(static_cast<uint32_t>(mTakeOutOthers.Number(0)));
  return !mTakeOutOthers.Failed();
}

}  // namespace kiln
