#pragma once

#include <algorithm>
#include <cstdint>
#include <vector>

namespace kiln {

/// IDs of the workgroups that every library has.
inline constexpr uint32_t kFontLibraryWorkgroup = 1;
inline constexpr uint32_t kSystemWorkgroup = 2;

/// The workgroups that a question is about, the preferred one first.
class WorkgroupScope {
 public:
  /// All of them.
  WorkgroupScope() = default;
  /// Those of a request; an empty list, or one with a 0 in it, means all.
  template <class Range>
  explicit WorkgroupScope(const Range& ids) : mIDs(ids.begin(), ids.end()) {
    if (std::find(mIDs.begin(), mIDs.end(), 0u) != mIDs.end()) mIDs.clear();
  }

  bool IsAll() const { return mIDs.empty(); }
  /// Place in the order of preference, 0 the best; the number of workgroups for one that isn't in the scope.
  size_t RankOf(uint32_t id) const {
    return static_cast<size_t>(std::find(mIDs.begin(), mIDs.end(), id) - mIDs.begin());
  }
  bool Contains(uint32_t id) const { return IsAll() || RankOf(id) < mIDs.size(); }

 private:
  std::vector<uint32_t> mIDs;
};

}  // namespace kiln
