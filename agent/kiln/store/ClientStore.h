#pragma once

#include <sys/types.h>

#include <cstdint>
#include <string>
#include <vector>

#include "kiln/store/Statement.h"

namespace kiln {

class Database;

/// The clients that have, or may come to have, activations.
class ClientStore {
 public:
  explicit ClientStore(Database& database);

  struct Client {
    int64_t id = 0;
    std::string uuid;
    pid_t pid = 0;
    uint64_t startTime = 0;  ///< of the process; see ProcessLife.h
    int32_t hostType = 0;
    std::string program;
  };

  /// Adds a client, or brings the one of that uuid up to date.
  /// \return Its ID; 0 when the database failed.
  int64_t Put(const Client& client);
  bool SetHostType(int64_t id, int32_t hostType);
  /// All but the user.
  std::vector<Client> All();
  /// With its activations.
  bool Remove(int64_t id);

 private:
  Statement mPut;
  Statement mSetHostType;
  Statement mAll;
  Statement mRemove;
};

}  // namespace kiln
