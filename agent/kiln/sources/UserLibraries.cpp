#include "kiln/sources/UserLibraries.h"

#include <optional>
#include <set>

#include "kiln/fonts/FontLibrary.h"
#include "kiln/store/WorkgroupScope.h"
#include "kiln/system/GivenName.h"
#include "protocol/ErrorCodes.h"

namespace kiln {

uint32_t UserLibraries::CheckName(const std::string& name, uint32_t id) const {
  if (!IsGivenName(name)) return codes::kInvalidParam;
  return mLibrary.workgroups.NameIsTaken(name, id) ? codes::kItemAlreadyExists : codes::kSuccess;
}

// One of the user's own.
uint32_t UserLibraries::CheckChangeable(uint32_t id) const {
  const std::optional<wire::WorkgroupType> type = mLibrary.workgroups.TypeOf(id);
  if (!type) return codes::kWorkgroupNotFound;
  return *type == wire::WORKGROUP_LOCAL ? codes::kSuccess : codes::kRestrictedWorkgroup;
}

uint32_t UserLibraries::Create(const std::string& name, uint32_t& id) {
  if (const uint32_t error = CheckName(name, 0)) return error;
  id = mLibrary.workgroups.Add(name, wire::WORKGROUP_LOCAL, "");
  return id != 0 ? codes::kSuccess : mLibrary.database->Error();
}

uint32_t UserLibraries::Rename(uint32_t id, const std::string& name) {
  if (const uint32_t error = CheckChangeable(id)) return error;
  if (id == kFontLibraryWorkgroup) return codes::kRestrictedWorkgroup;
  if (const uint32_t error = CheckName(name, id)) return error;
  return mLibrary.workgroups.SetName(id, name) ? codes::kSuccess : mLibrary.database->Error();
}

uint32_t UserLibraries::Delete(uint32_t id) {
  if (const uint32_t error = CheckChangeable(id)) return error;
  if (id == kFontLibraryWorkgroup) return codes::kRestrictedWorkgroup;
  Transaction transaction(*mLibrary.database);
  const bool fine = transaction.Began() && mLibrary.workgroups.HandOver(id, kFontLibraryWorkgroup) &&
                    mLibrary.workgroups.Remove(id);
  return fine ? transaction.Commit() : mLibrary.database->Error();
}

uint32_t UserLibraries::PutIn(uint32_t id, std::span<const uint32_t> fontIDs,
                              std::vector<uint32_t>& changed) {
  if (const uint32_t error = CheckChangeable(id)) return error;
  Transaction transaction(*mLibrary.database);
  if (!transaction.Began()) return mLibrary.database->Error();
  for (const uint32_t fontID : std::set<uint32_t>(fontIDs.begin(), fontIDs.end())) {
    const std::optional<FontRow> row = mLibrary.fonts.Load(fontID, WorkgroupScope());
    if (!row || mLibrary.workgroups.Holds(id, fontID)) continue;
    if (row->font.is_system()) return codes::kCannotAddSystemFontsToWorkgroup;
    // A library of one's own would lift the rule, since there copying is free.
    if (!mLibrary.rights.MayExport(fontID)) return codes::kFromRestrictedWorkgroup;
    if (!mLibrary.writer.PutInWorkgroup(fontID, id)) return mLibrary.database->Error();
    changed.push_back(fontID);
  }
  return transaction.Commit();
}

uint32_t UserLibraries::TakeOut(uint32_t id, std::span<const uint32_t> fontIDs,
                                std::vector<uint32_t>& changed, std::vector<uint32_t>& kept) {
  if (const uint32_t error = CheckChangeable(id)) return error;
  Transaction transaction(*mLibrary.database);
  if (!transaction.Began()) return mLibrary.database->Error();
  for (const uint32_t fontID : std::set<uint32_t>(fontIDs.begin(), fontIDs.end())) {
    if (!mLibrary.workgroups.Holds(id, fontID)) continue;
    if (!mLibrary.workgroups.OthersHold(id, fontID) && !mLibrary.activations.OfFont(fontID).empty()) {
      kept.push_back(fontID);
      continue;
    }
    if (!mLibrary.workgroups.TakeOut(id, fontID)) return mLibrary.database->Error();
    changed.push_back(fontID);
  }
  return transaction.Commit();
}

}  // namespace kiln
