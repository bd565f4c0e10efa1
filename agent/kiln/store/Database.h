#pragma once

#include <cstdint>
#include <memory>
#include <string>

struct sqlite3;

namespace kiln {

/// One connection to the library's SQLite file: write-ahead log, foreign keys on, a wait of some seconds for
/// a lock that another program holds.
///
/// Thread: the one that opened it. Errors are told by code; Error() gives the last one in the shared
/// numbering.
class Database {
 public:
  /// Opens or makes the file. Writes nothing to one that exists, not even at the end: that begins with
  /// Migrate() (Migrations.h). \param error  Receives 0, or kDatabaseOpenFailed, kDatabaseCorrupted,
  /// kDatabaseError. \return Null with an error.
  static std::unique_ptr<Database> Open(const std::string& path, uint32_t& error);
  ~Database();
  Database(const Database&) = delete;
  Database& operator=(const Database&) = delete;

  /// Runs fixed SQL of one or more statements.
  bool Execute(const char* sql);
  /// Reads one number by fixed SQL. False when there is no row.
  bool ReadNumber(const char* sql, int64_t& number);

  sqlite3* Handle() const { return mHandle; }
  /// The shared code of SQLite's last failure on this connection.
  uint32_t Error() const;
  std::string ErrorText() const;

 private:
  explicit Database(sqlite3* handle) : mHandle(handle) {}
  sqlite3* const mHandle;
};

/// A transaction for writing, from now to Commit(); rolled back if that isn't reached.
class Transaction {
 public:
  explicit Transaction(Database& database);
  ~Transaction();
  Transaction(const Transaction&) = delete;
  Transaction& operator=(const Transaction&) = delete;

  bool Began() const { return mOpen; }
  /// \return 0, or the database's error, and then nothing was written.
  uint32_t Commit();

 private:
  Database& mDatabase;
  bool mOpen;
};

}  // namespace kiln
