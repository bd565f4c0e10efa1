#pragma once

#include <cstdint>
#include <span>

namespace kiln {

class Database;

/// The steps from an empty file to today's schema; step n takes version n to n + 1. A step that was ever
/// released stays as it is.
std::span<const char* const> LibraryMigrations();

/// Brings a database to the version of the last step. Each step is a transaction of its own with the version
/// in it, so that one that fails leaves the version before it.
///
/// \return 0; kSchemaVersionMismatch for a database of a newer version, which is left untouched;
///         kDatabaseCorrupted when the file's own check fails; or the database's error.
uint32_t Migrate(Database& database, std::span<const char* const> steps);

}  // namespace kiln
