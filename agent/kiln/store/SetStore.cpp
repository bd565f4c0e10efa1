#include "kiln/store/SetStore.h"

#include <set>

#include "kiln/store/Database.h"
#include "kiln/system/GivenName.h"
#include "protocol/ErrorCodes.h"

namespace kiln {

SetStore::SetStore(Database& database)
    : mDatabase(database),
      mWorkgroup(database, "SELECT type FROM workgroups WHERE id = ? AND NOT hidden"),
      mWorkgroupOfSet(database,
                      "SELECT s.workgroup_id FROM sets s JOIN workgroups w ON w.id = s.workgroup_id"
                      " WHERE s.id = ? AND NOT w.hidden"),
      mMembership(database,
                  "SELECT i.system_path IS NOT NULL, EXISTS (SELECT 1 FROM workgroup_fonts m"
                  " WHERE m.font_id = f.id AND m.workgroup_id = ?2)"
                  " FROM fonts f JOIN files i ON i.id = f.file_id WHERE f.id = ?1"),
      mAdd(database, "INSERT INTO sets (name, workgroup_id) VALUES (?, ?) RETURNING id"),
      mPutFont(database, "INSERT INTO set_fonts (set_id, font_id) VALUES (?, ?) ON CONFLICT DO NOTHING"),
      mDelete(database, "DELETE FROM sets WHERE id = ?"),
      mAll(database,
           "SELECT s.id, s.name, w.id, w.name FROM sets s JOIN workgroups w ON w.id = s.workgroup_id"
           " WHERE NOT w.hidden ORDER BY s.id"),
      mFonts(database, "SELECT font_id FROM set_fonts WHERE set_id = ? ORDER BY font_id") {}

uint32_t SetStore::CheckWorkgroup(uint32_t workgroupID) {
  uint32_t error = codes::kWorkgroupNotFound;
  mWorkgroup.Start(workgroupID);
  while (mWorkgroup.Next()) {
    const bool system = mWorkgroup.Number(0) == wire::WORKGROUP_SYSTEM;
    error = system ? codes::kCannotAddSetsToSystemWorkgroup : codes::kSuccess;
  }
  return error;
}

// 0 for a set that isn't there, or whose workgroup doesn't show.
uint32_t SetStore::WorkgroupOf(uint32_t setID) {
  uint32_t workgroup = 0;
  mWorkgroupOfSet.Start(setID);
  while (mWorkgroupOfSet.Next()) workgroup = static_cast<uint32_t>(mWorkgroupOfSet.Number(0));
  return workgroup;
}

uint32_t SetStore::PutFonts(uint32_t setID, uint32_t workgroupID, std::span<const uint32_t> fontIDs) {
  for (const uint32_t font : fontIDs) {
    bool system = false;
    bool member = false;
    mMembership.Start(font, workgroupID);
    while (mMembership.Next()) {
      system = mMembership.Number(0) != 0;
      member = mMembership.Number(1) != 0;
    }
    if (system) return codes::kCannotAddSystemFontsToSet;
    if (!member) return codes::kFontNotInSourceContainer;
    if (!mPutFont.Run(setID, font)) return mDatabase.Error();
  }
  return codes::kSuccess;
}

uint32_t SetStore::Create(const std::string& name, uint32_t workgroupID, std::span<const uint32_t> fontIDs,
                          uint32_t& setID) {
  if (!IsGivenName(name)) return codes::kInvalidParam;
  Transaction transaction(mDatabase);
  if (!transaction.Began()) return mDatabase.Error();
  if (const uint32_t error = CheckWorkgroup(workgroupID)) return error;
  uint32_t id = 0;
  mAdd.Start(name, workgroupID);
  while (mAdd.Next()) id = static_cast<uint32_t>(mAdd.Number(0));
  if (id == 0) return mDatabase.Error();
  if (const uint32_t error = PutFonts(id, workgroupID, fontIDs)) return error;
  if (const uint32_t error = transaction.Commit()) return error;
  setID = id;
  return codes::kSuccess;
}

uint32_t SetStore::AddFonts(std::span<const uint32_t> setIDs, std::span<const uint32_t> fontIDs) {
  Transaction transaction(mDatabase);
  if (!transaction.Began()) return mDatabase.Error();
  uint32_t workgroup = 0;
  for (const uint32_t set : setIDs) {
    const uint32_t own = WorkgroupOf(set);
    if (own == 0) return codes::kSetNotFound;
    if (workgroup != 0 && own != workgroup) return codes::kSetsMustBelongToSameWorkgroup;
    workgroup = own;
  }
  for (const uint32_t set : std::set<uint32_t>(setIDs.begin(), setIDs.end())) {
    if (const uint32_t error = PutFonts(set, workgroup, fontIDs)) return error;
  }
  return transaction.Commit();
}

uint32_t SetStore::Delete(uint32_t setID) {
  if (WorkgroupOf(setID) == 0) return codes::kSetNotFound;
  return mDelete.Run(setID) ? codes::kSuccess : mDatabase.Error();
}

std::vector<wire::FontSet> SetStore::List(const WorkgroupScope& scope) {
  std::vector<wire::FontSet> sets;
  mAll.Start();
  while (mAll.Next()) {
    const auto workgroup = static_cast<uint32_t>(mAll.Number(2));
    if (!scope.Contains(workgroup)) continue;
    wire::FontSet& set = sets.emplace_back();
    set.set_id(static_cast<uint32_t>(mAll.Number(0)));
    set.set_name(mAll.Text(1));
    set.set_workgroup_id(workgroup);
    set.set_workgroup_name(mAll.Text(3));
    mFonts.Start(set.id());
    while (mFonts.Next()) set.add_font_ids(static_cast<uint32_t>(mFonts.Number(0)));
  }
  return sets;
}

}  // namespace kiln
