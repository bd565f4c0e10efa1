#pragma once

#include <string>

#include "kiln/store/Statement.h"

namespace kiln {

class Database;

/// Kiln's own settings, which survive it.
class SettingStore {
 public:
  explicit SettingStore(Database& database);

  /// Empty for one that was never set.
  std::string Get(const std::string& name);
  bool Is(const std::string& name) { return Get(name) == "1"; }

  /// \return False when the database failed.
  bool Put(const std::string& name, const std::string& value);
  bool PutFlag(const std::string& name, bool value) { return Put(name, value ? "1" : "0"); }

 private:
  Statement mGet;
  Statement mPut;
};

}  // namespace kiln
