#include "kiln/store/Statement.h"

#include <sqlite3.h>

#include "kiln/store/Database.h"

namespace kiln {

Statement::Statement(Database& database, const char* sql) {
  sqlite3_prepare_v3(database.Handle(), sql, -1, SQLITE_PREPARE_PERSISTENT, &mStatement, nullptr);
}

Statement::~Statement() {
  sqlite3_finalize(mStatement);
}

bool Statement::Next() {
  const int result = mStatement ? sqlite3_step(mStatement) : SQLITE_MISUSE;
  if (result == SQLITE_ROW) return true;
  mFailed = result != SQLITE_DONE;
  // A statement that has ended must not keep a read transaction open.
  sqlite3_reset(mStatement);
  return false;
}

int64_t Statement::Number(int column) const {
  return sqlite3_column_int64(mStatement, column);
}

std::string Statement::Text(int column) const {
  const unsigned char* text = sqlite3_column_text(mStatement, column);
  const int length = sqlite3_column_bytes(mStatement, column);
  return text ? std::string(reinterpret_cast<const char*>(text), static_cast<size_t>(length)) : std::string();
}

bool Statement::IsNull(int column) const {
  return sqlite3_column_type(mStatement, column) == SQLITE_NULL;
}

void Statement::Reset() {
  mFailed = false;
  sqlite3_reset(mStatement);
}

void Statement::Bind(int index, std::string_view text) {
  sqlite3_bind_text64(mStatement, index, text.data() ? text.data() : "", text.size(), SQLITE_TRANSIENT,
                      SQLITE_UTF8);
}

void Statement::BindNumber(int index, int64_t number) {
  sqlite3_bind_int64(mStatement, index, number);
}

}  // namespace kiln
