#include "kiln/store/SettingStore.h"

namespace kiln {

SettingStore::SettingStore(Database& database)
    : mGet(database, "SELECT value FROM settings WHERE name = ?"),
      mPut(database,
           "INSERT INTO settings (name, value) VALUES (?, ?) ON CONFLICT (name) DO UPDATE SET"
           " value = excluded.value") {}

std::string SettingStore::Get(const std::string& name) {
  std::string value;
  mGet.Start(name);
  while (mGet.Next()) value = mGet.Text(0);
  return value;
}

bool SettingStore::Put(const std::string& name, const std::string& value) {
  return mPut.Run(name, value);
}

}  // namespace kiln
