#include "kiln/store/Database.h"

#include <sqlite3.h>

#include "protocol/ErrorCodes.h"

namespace kiln {
namespace {

constexpr int kBusyMilliseconds = 5000;

uint32_t CodeOf(int result) {
  switch (result & 0xFF) {
    case SQLITE_OK:
    case SQLITE_ROW:
    case SQLITE_DONE:
      return codes::kSuccess;
    case SQLITE_FULL:
      return codes::kDatabaseFull;
    case SQLITE_CORRUPT:
    case SQLITE_NOTADB:
      return codes::kDatabaseCorrupted;
    case SQLITE_CANTOPEN:
    case SQLITE_PERM:
    case SQLITE_READONLY:
      return codes::kDatabaseOpenFailed;
    default:
      return codes::kDatabaseError;
  }
}

}  // namespace

std::unique_ptr<Database> Database::Open(const std::string& path, uint32_t& error) {
  sqlite3* handle = nullptr;
  const int flags = SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE | SQLITE_OPEN_NOMUTEX | SQLITE_OPEN_EXRESCODE;
  const int result = sqlite3_open_v2(path.c_str(), &handle, flags, nullptr);
  std::unique_ptr<Database> database(new Database(handle));
  error = CodeOf(result);
  if (error != codes::kSuccess) return nullptr;
  sqlite3_busy_timeout(handle, kBusyMilliseconds);
  sqlite3_db_config(handle, SQLITE_DBCONFIG_DEFENSIVE, 1, nullptr);
  // Until the file is known to be ours to write to.
  sqlite3_db_config(handle, SQLITE_DBCONFIG_NO_CKPT_ON_CLOSE, 1, nullptr);
  sqlite3_db_config(handle, SQLITE_DBCONFIG_TRUSTED_SCHEMA, 0, nullptr);
  // The pragma touches the file's first page, so that a file that is no database shows here.
  int64_t version = 0;
  if (!database->ReadNumber("PRAGMA user_version", version) ||
      !database->Execute("PRAGMA foreign_keys = ON")) {
    error = database->Error();
    return nullptr;
  }
  return database;
}

Database::~Database() {
  sqlite3_close_v2(mHandle);
}

bool Database::Execute(const char* sql) {
  return sqlite3_exec(mHandle, sql, nullptr, nullptr, nullptr) == SQLITE_OK;
}

bool Database::ReadNumber(const char* sql, int64_t& number) {
  sqlite3_stmt* statement = nullptr;
  if (sqlite3_prepare_v2(mHandle, sql, -1, &statement, nullptr) != SQLITE_OK) return false;
  const bool found = sqlite3_step(statement) == SQLITE_ROW;
  if (found) number = sqlite3_column_int64(statement, 0);
  sqlite3_finalize(statement);
  return found;
}

uint32_t Database::Error() const {
  const uint32_t code = CodeOf(sqlite3_extended_errcode(mHandle));
  return code != codes::kSuccess ? code : codes::kDatabaseError;
}

std::string Database::ErrorText() const {
  return sqlite3_errmsg(mHandle);
}

Transaction::Transaction(Database& database)
    : mDatabase(database), mOpen(database.Execute("BEGIN IMMEDIATE")) {}

Transaction::~Transaction() {
  if (mOpen) mDatabase.Execute("ROLLBACK");
}

uint32_t Transaction::Commit() {
  if (!mOpen || !mDatabase.Execute("COMMIT")) return mDatabase.Error();
  mOpen = false;
  return codes::kSuccess;
}

}  // namespace kiln
