#include "kiln/store/Migrations.h"

#include <sqlite3.h>

#include <string>

#include "kiln/store/Database.h"
#include "protocol/ErrorCodes.h"

namespace kiln {
namespace {

// A file is in the vault (hash) or the system's (system_path). `link` is its place below the link folder
// while it is active for all programs. The user is client 1, without a uuid.
constexpr const char* kFirstSchema = R"sql(
CREATE TABLE files (
  id INTEGER PRIMARY KEY,
  hash TEXT UNIQUE,
  system_path TEXT UNIQUE,
  extension TEXT NOT NULL,
  name TEXT NOT NULL,
  size INTEGER NOT NULL,
  modified INTEGER NOT NULL DEFAULT 0,
  checksum INTEGER NOT NULL DEFAULT 0,
  described INTEGER NOT NULL,
  missing INTEGER NOT NULL DEFAULT 0,
  link TEXT UNIQUE,
  CHECK ((hash IS NULL) <> (system_path IS NULL))
);
CREATE TABLE family_groups (
  id INTEGER PRIMARY KEY AUTOINCREMENT,
  name TEXT NOT NULL UNIQUE
);
CREATE TABLE fonts (
  id INTEGER PRIMARY KEY AUTOINCREMENT,
  file_id INTEGER NOT NULL REFERENCES files(id) ON DELETE CASCADE,
  face_index INTEGER NOT NULL,
  postscript_name TEXT NOT NULL,
  kind INTEGER NOT NULL,
  foundry TEXT NOT NULL,
  version TEXT NOT NULL,
  family TEXT NOT NULL,
  style TEXT NOT NULL,
  display_name TEXT NOT NULL,
  family_group_id INTEGER NOT NULL REFERENCES family_groups(id),
  kerning_checksum INTEGER NOT NULL,
  glyphmark_checksum INTEGER NOT NULL,
  UNIQUE (file_id, face_index)
);
CREATE INDEX fonts_by_postscript_name ON fonts(postscript_name);
CREATE INDEX fonts_by_family ON fonts(family);
CREATE INDEX fonts_by_family_group ON fonts(family_group_id);
CREATE TABLE workgroups (
  id INTEGER PRIMARY KEY AUTOINCREMENT,
  name TEXT NOT NULL,
  type INTEGER NOT NULL
);
CREATE TABLE workgroup_fonts (
  font_id INTEGER NOT NULL REFERENCES fonts(id) ON DELETE CASCADE,
  workgroup_id INTEGER NOT NULL REFERENCES workgroups(id) ON DELETE CASCADE,
  PRIMARY KEY (font_id, workgroup_id)
) WITHOUT ROWID;
CREATE INDEX fonts_by_workgroup ON workgroup_fonts(workgroup_id, font_id);
CREATE TABLE sets (
  id INTEGER PRIMARY KEY AUTOINCREMENT,
  workgroup_id INTEGER NOT NULL REFERENCES workgroups(id) ON DELETE CASCADE,
  name TEXT NOT NULL
);
CREATE TABLE set_fonts (
  set_id INTEGER NOT NULL REFERENCES sets(id) ON DELETE CASCADE,
  font_id INTEGER NOT NULL REFERENCES fonts(id) ON DELETE CASCADE,
  PRIMARY KEY (set_id, font_id)
) WITHOUT ROWID;
CREATE INDEX sets_by_font ON set_fonts(font_id);
CREATE TABLE clients (
  id INTEGER PRIMARY KEY AUTOINCREMENT,
  uuid TEXT NOT NULL UNIQUE,
  pid INTEGER NOT NULL,
  start_time INTEGER NOT NULL,
  host_type INTEGER NOT NULL,
  program TEXT NOT NULL
);
CREATE TABLE activations (
  font_id INTEGER NOT NULL REFERENCES fonts(id) ON DELETE CASCADE,
  client_id INTEGER NOT NULL REFERENCES clients(id) ON DELETE CASCADE,
  kind INTEGER NOT NULL,
  hold INTEGER NOT NULL,
  PRIMARY KEY (font_id, client_id)
) WITHOUT ROWID;
CREATE INDEX activations_by_client ON activations(client_id);
CREATE TABLE documents (
  id INTEGER PRIMARY KEY,
  path TEXT NOT NULL UNIQUE,
  host_name TEXT NOT NULL,
  host_category TEXT NOT NULL,
  saved INTEGER NOT NULL
);
CREATE TABLE document_fonts (
  document_id INTEGER NOT NULL REFERENCES documents(id) ON DELETE CASCADE,
  position INTEGER NOT NULL,
  postscript_name TEXT NOT NULL,
  identity BLOB NOT NULL,
  PRIMARY KEY (document_id, position)
) WITHOUT ROWID;
INSERT INTO workgroups (id, name, type) VALUES (1, 'Font Library (LOCALIZE ME)', 3), (2, 'System', 4);
INSERT INTO clients (id, uuid, pid, start_time, host_type, program) VALUES (1, '', 0, 0, 0, '');
)sql";

// Workgroups can be hidden, be filled from a folder, forbid export and refuse fonts. A file of such a folder
// is known by path, size and time, so that a second look reads only what is new; without a file_id it is one
// that can't be read as a font. A font that leaves a workgroup leaves the workgroup's sets, too.
constexpr const char* kWorkgroupSources = R"sql(
ALTER TABLE workgroups ADD COLUMN hidden INTEGER NOT NULL DEFAULT 0;
ALTER TABLE workgroups ADD COLUMN folder TEXT;
ALTER TABLE workgroups ADD COLUMN export_allowed INTEGER NOT NULL DEFAULT 1;
ALTER TABLE workgroup_fonts ADD COLUMN refused INTEGER NOT NULL DEFAULT 0;
CREATE TABLE folder_files (
  workgroup_id INTEGER NOT NULL REFERENCES workgroups(id) ON DELETE CASCADE,
  path TEXT NOT NULL,
  size INTEGER NOT NULL,
  modified INTEGER NOT NULL,
  file_id INTEGER REFERENCES files(id) ON DELETE CASCADE,
  PRIMARY KEY (workgroup_id, path)
) WITHOUT ROWID;
CREATE INDEX folder_files_by_file ON folder_files(file_id);
CREATE TRIGGER sets_follow_their_workgroup AFTER DELETE ON workgroup_fonts BEGIN
  DELETE FROM set_fonts WHERE font_id = OLD.font_id
    AND set_id IN (SELECT id FROM sets WHERE workgroup_id = OLD.workgroup_id);
END;
CREATE TABLE settings (
  name TEXT PRIMARY KEY,
  value TEXT NOT NULL
) WITHOUT ROWID;
)sql";

// Not only whether a file has gone: FileState.h.
constexpr const char* kFileStates = "ALTER TABLE files RENAME COLUMN missing TO state";

constexpr const char* const kSteps[] = {kFirstSchema, kWorkgroupSources, kFileStates};

bool CheckPasses(Database& database) {
  int64_t count = 0;
  // One row with "ok" for a sound file, else up to one row of complaint.
  return database.ReadNumber("SELECT count(*) FROM pragma_quick_check(1) WHERE quick_check = 'ok'", count) &&
         count == 1;
}

}  // namespace

std::span<const char* const> LibraryMigrations() {
  return kSteps;
}

uint32_t Migrate(Database& database, std::span<const char* const> steps) {
  int64_t version = 0;
  if (!database.ReadNumber("PRAGMA user_version", version)) return database.Error();
  if (version < 0 || static_cast<uint64_t>(version) > steps.size()) return codes::kSchemaVersionMismatch;
  if (!CheckPasses(database)) return codes::kDatabaseCorrupted;
  // From here on the file may be written to, be it by the log that is folded into it at the end.
  sqlite3_db_config(database.Handle(), SQLITE_DBCONFIG_NO_CKPT_ON_CLOSE, 0, nullptr);
  if (!database.Execute("PRAGMA journal_mode = WAL; PRAGMA synchronous = NORMAL")) return database.Error();
  for (auto step = static_cast<size_t>(version); step < steps.size(); ++step) {
    Transaction transaction(database);
    const std::string setVersion = "PRAGMA user_version = " + std::to_string(step + 1);
    if (!transaction.Began() || !database.Execute(steps[step]) || !database.Execute(setVersion.c_str())) {
      return database.Error();
    }
    if (const uint32_t error = transaction.Commit()) return error;
  }
  return codes::kSuccess;
}

}  // namespace kiln
