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

  /// By ascending ID, each with the number of its fonts.
  std::vector<wire::Workgroup> All();
  /// Nothing for an unknown ID.
  std::optional<wire::WorkgroupType> TypeOf(uint32_t id);

 private:
  Statement mAll;
  Statement mTypeOf;
};

}  // namespace kiln
