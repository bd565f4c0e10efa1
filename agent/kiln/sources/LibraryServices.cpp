#include "kiln/sources/LibraryServices.h"

#include <algorithm>

#include "kiln/fonts/FontLibrary.h"

namespace kiln {
namespace {

constexpr size_t kIDsPerEvent = 100000;

}  // namespace

void LibraryServices::TellLibraryChanged(const std::vector<uint32_t>& fontIDs) const {
  for (size_t start = 0; start < fontIDs.size(); start += kIDsPerEvent) {
    const auto first = fontIDs.begin() + static_cast<ptrdiff_t>(start);
    const auto last = first + static_cast<ptrdiff_t>(std::min(fontIDs.size() - start, kIDsPerEvent));
    wire::ServerMessage event;
    event.mutable_library_changed()->mutable_font_ids()->Add(first, last);
    broadcast(event);
  }
}

void LibraryServices::TellWorkgroupsChanged() const {
  wire::ServerMessage event;
  event.mutable_workgroups_changed();
  broadcast(event);
}

int64_t LibraryServices::CountSetEntries() const {
  int64_t count = 0;
  library.database->ReadNumber(
      "SELECT (SELECT count(*) FROM sets s JOIN workgroups w ON w.id = s.workgroup_id WHERE NOT w.hidden)"
      " + (SELECT count(*) FROM set_fonts f JOIN sets s ON s.id = f.set_id"
      " JOIN workgroups w ON w.id = s.workgroup_id WHERE NOT w.hidden)",
      count);
  return count;
}

void LibraryServices::TellSetsChanged() const {
  wire::ServerMessage event;
  event.mutable_sets_changed();
  broadcast(event);
}

}  // namespace kiln
