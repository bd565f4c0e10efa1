#include "kiln/store/WorkgroupStore.h"

namespace kiln {

WorkgroupStore::WorkgroupStore(Database& database)
    : mListed(
          database,
          "SELECT w.id, w.name, w.type, (SELECT count(*) FROM workgroup_fonts m WHERE m.workgroup_id = w.id)"
          " FROM workgroups w WHERE w.hidden = 0 ORDER BY w.id"),
      mTypeOf(database, "SELECT type FROM workgroups WHERE id = ? AND hidden = 0"),
      mExists(database, "SELECT EXISTS (SELECT 1 FROM workgroups WHERE id = ?)"),
      mNameIsTaken(database,
                   "SELECT EXISTS (SELECT 1 FROM workgroups WHERE name = ? AND id <> ? AND hidden = 0)"),
      mAllowsExport(
          database,
          "SELECT EXISTS (SELECT 1 FROM workgroups WHERE id = ? AND hidden = 0 AND export_allowed)"),
      mFromFolders(
          database,
          "SELECT id, name, type, folder, hidden FROM workgroups WHERE folder IS NOT NULL ORDER BY id"),
      mLocal(database, "SELECT id FROM workgroups WHERE type = 3 ORDER BY id"),
      mAdd(database, "INSERT INTO workgroups (name, type, folder) VALUES (?, ?, nullif(?, '')) RETURNING id"),
      mRemove(database, "DELETE FROM workgroups WHERE id = ?"),
      mSetName(database, "UPDATE workgroups SET name = ? WHERE id = ?"),
      mSetType(database, "UPDATE workgroups SET type = ? WHERE id = ?"),
      mSetFolder(database, "UPDATE workgroups SET folder = ? WHERE id = ?"),
      mSetHidden(database, "UPDATE workgroups SET hidden = ? WHERE id = ?"),
      mSetExportAllowed(database, "UPDATE workgroups SET export_allowed = ? WHERE id = ?"),
      mHolds(database,
             "SELECT EXISTS (SELECT 1 FROM workgroup_fonts WHERE workgroup_id = ? AND font_id = ?)"),
      mOthersHold(database,
                  "SELECT EXISTS (SELECT 1 FROM workgroup_fonts WHERE workgroup_id <> ? AND font_id = ?)"),
      mTakeOut(database, "DELETE FROM workgroup_fonts WHERE workgroup_id = ? AND font_id = ?"),
      mHandOver(database,
                "INSERT INTO workgroup_fonts (font_id, workgroup_id, refused)"
                " SELECT m.font_id, ?2, m.refused FROM workgroup_fonts m WHERE m.workgroup_id = ?1"
                " AND NOT EXISTS (SELECT 1 FROM workgroup_fonts o JOIN workgroups w ON w.id = o.workgroup_id"
                " WHERE o.font_id = m.font_id AND o.workgroup_id <> ?1 AND w.hidden = 0)"
                " ON CONFLICT DO NOTHING"),
      mAcceptAll(database, "UPDATE workgroup_fonts SET refused = 0 WHERE workgroup_id = ? AND refused <> 0"),
      mRefuse(database,
              "UPDATE workgroup_fonts SET refused = 1 WHERE workgroup_id = ?"
              " AND font_id IN (SELECT id FROM fonts WHERE postscript_name = ?)") {}

std::vector<wire::Workgroup> WorkgroupStore::Listed() {
  std::vector<wire::Workgroup> all;
  mListed.Start();
  while (mListed.Next()) {
    wire::Workgroup& workgroup = all.emplace_back();
    workgroup.set_id(static_cast<uint32_t>(mListed.Number(0)));
    workgroup.set_name(mListed.Text(1));
    workgroup.set_type(static_cast<wire::WorkgroupType>(mListed.Number(2)));
    workgroup.set_font_count(static_cast<uint32_t>(mListed.Number(3)));
  }
  return all;
}

std::optional<wire::WorkgroupType> WorkgroupStore::TypeOf(uint32_t id) {
  std::optional<wire::WorkgroupType> type;
  mTypeOf.Start(id);
  while (mTypeOf.Next()) type = static_cast<wire::WorkgroupType>(mTypeOf.Number(0));
  return type;
}

bool WorkgroupStore::Exists(uint32_t id) {
  return mExists.Ask(id);
}

bool WorkgroupStore::NameIsTaken(const std::string& name, uint32_t exceptID) {
  return mNameIsTaken.Ask(name, exceptID);
}

bool WorkgroupStore::AllowsExport(uint32_t id) {
  return mAllowsExport.Ask(id);
}

std::vector<WorkgroupStore::FromFolder> WorkgroupStore::FromFolders() {
  std::vector<FromFolder> all;
  mFromFolders.Start();
  while (mFromFolders.Next()) {
    all.push_back({static_cast<uint32_t>(mFromFolders.Number(0)), mFromFolders.Text(1),
                   static_cast<wire::WorkgroupType>(mFromFolders.Number(2)), mFromFolders.Text(3),
                   mFromFolders.Number(4) != 0});
  }
  return all;
}

std::vector<uint32_t> WorkgroupStore::Local() {
  std::vector<uint32_t> ids;
  mLocal.Start();
  while (mLocal.Next()) ids.push_back(static_cast<uint32_t>(mLocal.Number(0)));
  return ids;
}

uint32_t WorkgroupStore::Add(const std::string& name, wire::WorkgroupType type, const std::string& folder) {
  mAdd.Start(name, static_cast<int>(type), folder);
  uint32_t id = 0;
  while (mAdd.Next()) id = static_cast<uint32_t>(mAdd.Number(0));
  return id;
}

bool WorkgroupStore::Remove(uint32_t id) {
  return mRemove.Run(id);
}

bool WorkgroupStore::SetName(uint32_t id, const std::string& name) {
  return mSetName.Run(name, id);
}

bool WorkgroupStore::SetType(uint32_t id, wire::WorkgroupType type) {
  return mSetType.Run(static_cast<int>(type), id);
}

bool WorkgroupStore::SetFolder(uint32_t id, const std::string& folder) {
  return mSetFolder.Run(folder, id);
}

bool WorkgroupStore::SetHidden(uint32_t id, bool hidden) {
  return mSetHidden.Run(hidden, id);
}

bool WorkgroupStore::SetExportAllowed(uint32_t id, bool allowed) {
  return mSetExportAllowed.Run(allowed, id);
}

bool WorkgroupStore::Holds(uint32_t id, uint32_t fontID) {
  return mHolds.Ask(id, fontID);
}

bool WorkgroupStore::OthersHold(uint32_t id, uint32_t fontID) {
  return mOthersHold.Ask(id, fontID);
}

bool WorkgroupStore::TakeOut(uint32_t id, uint32_t fontID) {
  return mTakeOut.Run(id, fontID);
}

bool WorkgroupStore::HandOver(uint32_t id, uint32_t toID) {
  return mHandOver.Run(id, toID);
}

}  // namespace kiln
