#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "kiln/store/Statement.h"
#include "protocol/Kiln.pb.h"

namespace kiln {

class Database;

/// The named collections of fonts.
class WorkgroupStore {
 public:
  explicit WorkgroupStore(Database& database);

  /// All that aren't hidden, by ascending ID, each with the number of its fonts.
  std::vector<wire::Workgroup> Listed();
  /// Nothing for an unknown ID, and for a hidden one.
  std::optional<wire::WorkgroupType> TypeOf(uint32_t id);

 private:
  Statement mListed;
  Statement mTypeOf;
};

}  // namespace kiln
