#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "kiln/store/Statement.h"

namespace kiln {

class Database;

/// What is known of the files that workgroups are filled from, so that only new and changed ones are read.
/// Writing calls belong into a transaction of the caller's.
class FolderFileStore {
 public:
  explicit FolderFileStore(Database& database);

  struct File {
    uint64_t size = 0;
    int64_t modified = 0;  ///< nanoseconds since 1970

    bool operator==(const File&) const = default;
  };
  /// By path. One whose copy in the vault isn't sound has no time, so that it is read again.
  std::map<std::string, File> Of(uint32_t workgroupID);

  /// Notes what a file holds: the library's file with that font. \param fontID  0: it is no font.
  bool Put(uint32_t workgroupID, const std::string& path, const File& file, uint32_t fontID);
  bool Remove(uint32_t workgroupID, const std::string& path);

  /// Takes the fonts out of a workgroup that none of its files holds any more.
  /// \return False when the database failed.
  bool TakeOutOthers(uint32_t workgroupID, std::vector<uint32_t>& fontIDs);

 private:
  Statement mOf;
  Statement mPut;
  Statement mRemove;
  Statement mTakeOutOthers;
};

}  // namespace kiln
