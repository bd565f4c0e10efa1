#include "kiln/store/ClientStore.h"

namespace kiln {

ClientStore::ClientStore(Database& database)
    : mPut(database,
           "INSERT INTO clients (uuid, pid, start_time, host_type, program) VALUES (?, ?, ?, ?, ?)"
           " ON CONFLICT (uuid) DO UPDATE SET pid = excluded.pid, start_time = excluded.start_time,"
           " host_type = excluded.host_type, program = excluded.program RETURNING id"),
      mSetHostType(database, "UPDATE clients SET host_type = ? WHERE id = ?"),
      mAll(database,
           "SELECT id, uuid, pid, start_time, host_type, program FROM clients WHERE uuid <> '' ORDER BY id"),
      mRemove(database, "DELETE FROM clients WHERE id = ?") {}

int64_t ClientStore::Put(const Client& client) {
  mPut.Start(client.uuid, client.pid, client.startTime, client.hostType, client.program);
  int64_t id = 0;
  while (mPut.Next()) id = mPut.Number(0);
  return id;
}

bool ClientStore::SetHostType(int64_t id, int32_t hostType) {
  return mSetHostType.Run(hostType, id);
}

std::vector<ClientStore::Client> ClientStore::All() {
  std::vector<Client> clients;
  mAll.Start();
  while (mAll.Next()) {
    clients.push_back({mAll.Number(0), mAll.Text(1), static_cast<pid_t>(mAll.Number(2)),
                       static_cast<uint64_t>(mAll.Number(3)), static_cast<int32_t>(mAll.Number(4)),
                       mAll.Text(5)});
  }
  return clients;
}

bool ClientStore::Remove(int64_t id) {
  return mRemove.Run(id);
}

}  // namespace kiln
