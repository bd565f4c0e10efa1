#include "kiln/store/WorkgroupStore.h"

namespace kiln {

WorkgroupStore::WorkgroupStore(Database& database)
    : mListed(
          database,
          "SELECT w.id, w.name, w.type, (SELECT count(*) FROM workgroup_fonts m WHERE m.workgroup_id = w.id)"
          " FROM workgroups w WHERE w.hidden = 0 ORDER BY w.id"),
      mTypeOf(database, "SELECT type FROM workgroups WHERE id = ? AND hidden = 0") {}

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

}  // namespace kiln
