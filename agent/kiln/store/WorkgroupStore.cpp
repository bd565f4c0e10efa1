#include "kiln/store/WorkgroupStore.h"

namespace kiln {

WorkgroupStore::WorkgroupStore(Database& database)
    : mAll(database,
           "SELECT w.id, w.name, w.type, (SELECT count(*) FROM workgroup_fonts m WHERE m.workgroup_id = w.id)"
           " FROM workgroups w ORDER BY w.id"),
      mTypeOf(database, "SELECT type FROM workgroups WHERE id = ?") {}

std::vector<wire::Workgroup> WorkgroupStore::All() {
  std::vector<wire::Workgroup> all;
  mAll.Start();
  while (mAll.Next()) {
    wire::Workgroup& workgroup = all.emplace_back();
    workgroup.set_id(static_cast<uint32_t>(mAll.Number(0)));
    workgroup.set_name(mAll.Text(1));
    workgroup.set_type(static_cast<wire::WorkgroupType>(mAll.Number(2)));
    workgroup.set_font_count(static_cast<uint32_t>(mAll.Number(3)));
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
