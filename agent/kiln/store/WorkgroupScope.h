#pragma once

#include <cstddef>
#include <cstdint>
#include <map>

namespace kiln {

/// IDs of the workgroups that every library has.
inline constexpr uint32_t kFontLibraryWorkgroup = 1;
inline constexpr uint32_t kSystemWorkgroup = 2;

/// The workgroups that a question is about, the preferred one first. A hidden workgroup is in none but
/// Anywhere().
class WorkgroupScope {
 public:
  /// All that are listed.
  WorkgroupScope() = default;
  /// Hidden ones too, and fonts that no workgroup holds any more: for what is active, which may be given back
  /// wherever it came from.
  static WorkgroupScope Anywhere() {
    WorkgroupScope scope;
    scope.mAnywhere = true;
    return scope;
  }
  /// Those of a request; an empty list, or one with a 0 in it, means all.
  template <class Range>
  explicit WorkgroupScope(const Range& ids) {
    for (const uint32_t id : ids) mRanks.emplace(id, mRanks.size());
    if (mRanks.count(0) > 0) mRanks.clear();
  }

  bool IsAll() const { return mRanks.empty(); }
  bool IsAnywhere() const { return mAnywhere; }
  /// Place in the order of preference, 0 the best; the number of workgroups for one that isn't in the scope.
  size_t RankOf(uint32_t id) const {
    const auto rank = mRanks.find(id);
    return rank == mRanks.end() ? mRanks.size() : rank->second;
  }
  bool Contains(uint32_t id) const { return IsAll() || mRanks.count(id) > 0; }
  /// The workgroups by their IDs; empty for all.
  const std::map<uint32_t, size_t>& Ranks() const { return mRanks; }

 private:
  std::map<uint32_t, size_t> mRanks;
  bool mAnywhere = false;
};

}  // namespace kiln
