#include "kiln/store/FontStore.h"

#include <algorithm>

#include "kiln/fonts/Vault.h"

namespace kiln {

FontStore::FontStore(Database& database, const KilnPaths& paths)
    : mPaths(paths),
      mLoad(database,
            "SELECT f.postscript_name, f.kind, f.foundry, f.version, f.kerning_checksum, i.checksum,"
            " f.glyphmark_checksum, i.size, i.name, f.family, f.style, f.display_name, g.id, g.name, "
            "f.face_index,"
            " i.id, i.hash, i.system_path, i.extension, i.link, i.state"
            " FROM fonts f JOIN files i ON i.id = f.file_id JOIN family_groups g ON g.id = f.family_group_id"
            " WHERE f.id = ?"),
      mWorkgroups(database,
                  "SELECT w.id, w.name, w.type, w.hidden, m.refused FROM workgroup_fonts m"
                  " JOIN workgroups w ON w.id = m.workgroup_id WHERE m.font_id = ? ORDER BY w.hidden, w.id"),
      mWithPostScriptName(database, "SELECT id FROM fonts WHERE postscript_name = ? ORDER BY id"),
      mWithFamily(database,
                  "SELECT id FROM fonts WHERE family = ?1 UNION SELECT f.id FROM fonts f"
                  " JOIN family_groups g ON g.id = f.family_group_id WHERE g.name = ?1 ORDER BY 1"),
      mInFamilyGroup(database, "SELECT id FROM fonts WHERE family_group_id = ? ORDER BY id"),
      mAfter(database,
             "SELECT f.id FROM fonts f WHERE f.id > ? AND EXISTS (SELECT 1 FROM workgroup_fonts m"
             " JOIN workgroups w ON w.id = m.workgroup_id WHERE m.font_id = f.id AND w.hidden = 0)"
             " ORDER BY f.id LIMIT ?"),
      mAfterInWorkgroup(database,
                        "SELECT font_id FROM workgroup_fonts WHERE workgroup_id ="
                        " (SELECT id FROM workgroups WHERE id = ? AND hidden = 0) AND font_id > ?"
                        " ORDER BY font_id LIMIT ?"),
      mCountOfLibrary(database,
                      "SELECT count(*) FROM fonts f JOIN files i ON i.id = f.file_id WHERE i.hash IS NOT NULL"
                      " AND EXISTS (SELECT 1 FROM workgroup_fonts m WHERE m.font_id = f.id)"),
      mCountOfSystem(database,
                     "SELECT count(*) FROM fonts f JOIN files i ON i.id = f.file_id"
                     " WHERE i.system_path IS NOT NULL") {}

bool FontStore::ReadWorkgroup(const WorkgroupScope& scope, wire::Font& font) {
  bool found = false;
  size_t best = 0;
  mWorkgroups.Start(font.id());
  while (mWorkgroups.Next()) {
    const auto id = static_cast<uint32_t>(mWorkgroups.Number(0));
    // A mark counts wherever it was made.
    if (mWorkgroups.Number(4) != 0) font.set_refused(true);
    const bool hidden = mWorkgroups.Number(3) != 0;
    if (!scope.Contains(id) || (hidden && !scope.IsAnywhere())) continue;
    const size_t rank = scope.IsAll() ? 0 : scope.RankOf(id);
    if (found && rank >= best) continue;
    found = true;
    best = rank;
    font.set_workgroup_id(id);
    font.set_workgroup_name(mWorkgroups.Text(1));
    font.set_workgroup_type(static_cast<wire::WorkgroupType>(mWorkgroups.Number(2)));
  }
  return found || scope.IsAnywhere();
}

std::optional<FontRow> FontStore::Load(uint32_t id, const WorkgroupScope& scope) {
  mLoad.Start(id);
  if (!mLoad.Next()) return std::nullopt;
  FontRow row;
  wire::Font& font = row.font;
  font.set_id(id);
  font.set_postscript_name(mLoad.Text(0));
  font.set_kind(static_cast<wire::FontKind>(mLoad.Number(1)));
  font.set_foundry(mLoad.Text(2));
  font.set_version(mLoad.Text(3));
  font.set_kerning_checksum(static_cast<uint32_t>(mLoad.Number(4)));
  font.set_checksum(static_cast<uint32_t>(mLoad.Number(5)));
  font.set_glyphmark_checksum(static_cast<uint32_t>(mLoad.Number(6)));
  font.set_outline_file_size(static_cast<uint64_t>(mLoad.Number(7)));
  font.set_outline_file_name(mLoad.Text(8));
  font.set_family(mLoad.Text(9));
  font.set_style(mLoad.Text(10));
  font.set_display_name(mLoad.Text(11));
  font.set_family_group_id(static_cast<uint32_t>(mLoad.Number(12)));
  font.set_family_group_name(mLoad.Text(13));
  font.set_face_index(static_cast<uint32_t>(mLoad.Number(14)));
  row.fileID = mLoad.Number(15);
  font.set_is_system(mLoad.IsNull(16));
  font.set_in_vault(!font.is_system());
  font.set_path(font.is_system() ? mLoad.Text(17) : Vault::PathOf(mPaths, mLoad.Text(16), mLoad.Text(18)));
  if (!mLoad.IsNull(19)) font.set_link_path(mPaths.links + "/" + mLoad.Text(19));
  row.file = static_cast<FileState>(mLoad.Number(20));
  while (mLoad.Next()) continue;
  if (!ReadWorkgroup(scope, font)) return std::nullopt;
  return row;
}

std::vector<uint32_t> FontStore::IDs(Statement& statement) {
  std::vector<uint32_t> ids;
  while (statement.Next()) ids.push_back(static_cast<uint32_t>(statement.Number(0)));
  return ids;
}

std::vector<uint32_t> FontStore::WithPostScriptName(const std::string& name) {
  mWithPostScriptName.Start(name);
  return IDs(mWithPostScriptName);
}

std::vector<uint32_t> FontStore::WithFamily(const std::string& name) {
  mWithFamily.Start(name);
  return IDs(mWithFamily);
}

std::vector<uint32_t> FontStore::InFamilyGroup(uint32_t group) {
  mInFamilyGroup.Start(group);
  return IDs(mInFamilyGroup);
}

std::vector<uint32_t> FontStore::After(uint32_t id, uint32_t limit, const WorkgroupScope& scope) {
  if (scope.IsAll()) {
    mAfter.Start(id, limit);
    return IDs(mAfter);
  }
  std::vector<uint32_t> ids;
  for (const auto& [workgroup, rank] : scope.Ranks()) {
    mAfterInWorkgroup.Start(workgroup, id, limit);
    const std::vector<uint32_t> members = IDs(mAfterInWorkgroup);
    ids.insert(ids.end(), members.begin(), members.end());
  }
  std::sort(ids.begin(), ids.end());
  ids.erase(std::unique(ids.begin(), ids.end()), ids.end());
  if (ids.size() > limit) ids.resize(limit);
  return ids;
}

uint32_t FontStore::CountOfLibrary() {
  mCountOfLibrary.Start();
  const std::vector<uint32_t> count = IDs(mCountOfLibrary);
  return count.empty() ? 0 : count.front();
}

uint32_t FontStore::CountOfSystem() {
  mCountOfSystem.Start();
  const std::vector<uint32_t> count = IDs(mCountOfSystem);
  return count.empty() ? 0 : count.front();
}

}  // namespace kiln
