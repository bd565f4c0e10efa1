#include "kiln/fonts/FontLibrary.h"

#include <cerrno>
#include <cstring>
#include <set>
#include <utility>

#include "kiln/store/Migrations.h"
#include "kiln/system/BoundedLog.h"
#include "kiln/system/ProcessLife.h"
#include "protocol/ErrorCodes.h"

namespace kiln {
namespace {

uint32_t LockLibrary(const KilnPaths& paths, BoundedLog& log, LockFile& lock) {
  int error = MakeFolders(paths.data);
  if (error == 0) error = lock.Take(paths.dataLock);
  if (error == 0) return codes::kSuccess;
  log.Print("The library in '%s' can't be used: %s", paths.data.c_str(), std::strerror(error));
  return error == EWOULDBLOCK ? codes::kVaultInUse : codes::kInvalidVault;
}

// Forgets the clients whose process has gone; their activations go with them.
uint32_t StartActivations(FontLibrary& library) {
  std::set<int64_t> alive;
  std::vector<int64_t> gone;
  for (const ClientStore::Client& client : library.clients.All()) {
    const bool runs = client.startTime != 0 && ProcessStartTime(client.pid) == client.startTime;
    if (runs) alive.insert(client.id);
    if (!runs) gone.push_back(client.id);
  }
  const uint32_t error = library.book.Start([&alive](int64_t client) { return alive.count(client) > 0; });
  if (error != codes::kSuccess) return error;
  Transaction transaction(*library.database);
  for (const int64_t client : gone) {
    if (!library.clients.Remove(client)) return library.database->Error();
  }
  return transaction.Commit();
}

}  // namespace

FontLibrary::FontLibrary(const KilnPaths& paths, LockFile taken, std::unique_ptr<Database> opened)
    : lock(std::move(taken)),
      database(std::move(opened)),
      vault(paths),
      links(paths.links, paths.vault),
      writer(*database, paths),
      fonts(*database, paths),
      workgroups(*database),
      folderFiles(*database),
      settings(*database),
      clients(*database),
      activations(*database),
      documents(*database),
      book(*database, fonts, activations, writer, links),
      matcher(*database, fonts, book),
      sets(*database),
      rights(*database),
      vaultFiles(*database, paths),
      vaultCheck(*database, fonts, activations, writer, links) {}

std::unique_ptr<FontLibrary> FontLibrary::Open(const KilnPaths& paths, BoundedLog& log, uint32_t& error) {
  LockFile lock;
  error = LockLibrary(paths, log, lock);
  if (error != codes::kSuccess) return nullptr;

  std::unique_ptr<Database> database = Database::Open(paths.database, error);
  if (database) error = Migrate(*database, LibraryMigrations());
  if (error != codes::kSuccess) {
    log.Print("The database '%s' can't be used: code 0x%08x, %s", paths.database.c_str(), error,
              database ? database->ErrorText().c_str() : "not opened");
    if (error != codes::kSchemaVersionMismatch) error = codes::kInvalidVault;
    return nullptr;
  }
  auto library = std::make_unique<FontLibrary>(paths, std::move(lock), std::move(database));
  error = library->vault.Prepare();
  if (error == codes::kSuccess) error = StartActivations(*library);
  if (error == codes::kSuccess) return library;
  log.Print("The vault '%s' can't be used: code 0x%08x", paths.vault.c_str(), error);
  error = codes::kInvalidVault;
  return nullptr;
}

}  // namespace kiln
