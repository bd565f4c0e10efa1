#include "kiln/store/FontRights.h"

#include "kiln/store/Database.h"
#include "protocol/ErrorCodes.h"
#include "protocol/Kiln.pb.h"

namespace kiln {

FontRights::FontRights(Database& database)
    : mDatabase(database),
      mWorkgroup(database, "SELECT type FROM workgroups WHERE id = ?"),
      mSetRefused(database, "UPDATE workgroup_fonts SET refused = ? WHERE workgroup_id = ? AND font_id = ?"),
      mMayExport(
          database,
          "SELECT i.system_path IS NOT NULL OR EXISTS (SELECT 1 FROM workgroup_fonts m JOIN workgroups w"
          " ON w.id = m.workgroup_id WHERE m.font_id = f.id AND w.export_allowed AND NOT w.hidden)"
          " FROM fonts f JOIN files i ON i.id = f.file_id WHERE f.id = ?") {}

uint32_t FontRights::SetRefused(uint32_t workgroupID, std::span<const uint32_t> fontIDs, bool refused) {
  uint32_t error = codes::kWorkgroupNotFound;
  mWorkgroup.Start(workgroupID);
  while (mWorkgroup.Next()) {
    const int64_t type = mWorkgroup.Number(0);
    const bool server = type == wire::WORKGROUP_SERVER_ALL || type == wire::WORKGROUP_SERVER ||
                        type == wire::WORKGROUP_SERVER_PERSONAL;
    error = server ? codes::kRestrictedWorkgroup : codes::kSuccess;
  }
  if (error != codes::kSuccess) return error;
  Transaction transaction(mDatabase);
  if (!transaction.Began()) return mDatabase.Error();
  for (const uint32_t font : fontIDs) {
    if (!mSetRefused.Run(refused, workgroupID, font)) return mDatabase.Error();
  }
  return transaction.Commit();
}

bool FontRights::MayExport(uint32_t fontID) {
  bool allowed = false;
  mMayExport.Start(fontID);
  while (mMayExport.Next()) allowed = mMayExport.Number(0) != 0;
  return allowed;
}

}  // namespace kiln
