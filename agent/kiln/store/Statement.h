#pragma once

#include <concepts>
#include <cstdint>
#include <string>
#include <string_view>

struct sqlite3_stmt;

namespace kiln {

class Database;

/// One prepared statement, kept for many runs. Values only ever come in by binding.
///
/// A run is: Start() with all values, then Next() while it gives rows, reading the columns in between. Run()
/// does both for a statement without rows. A statement that couldn't be prepared fails in every run.
class Statement {
 public:
  Statement(Database& database, const char* sql);
  ~Statement();
  Statement(const Statement&) = delete;
  Statement& operator=(const Statement&) = delete;

  /// Texts are copied.
  template <class... Values>
  void Start(const Values&... values) {
    Reset();
    int index = 0;
    (Bind(++index, values), ...);
  }
  /// \return True with a row. False at the end and on failure; Failed() tells them apart.
  bool Next();
  bool Failed() const { return mFailed; }

  /// \return False on failure; Database::Error() then says why.
  template <class... Values>
  bool Run(const Values&... values) {
    Start(values...);
    while (Next()) continue;
    Reset();
    return !mFailed;
  }

  /// For a question whose one row is 0 or 1. False on failure.
  template <class... Values>
  bool Ask(const Values&... values) {
    bool answer = false;
    Start(values...);
    while (Next()) answer = Number(0) != 0;
    return answer;
  }

  int64_t Number(int column) const;
  std::string Text(int column) const;
  bool IsNull(int column) const;

 private:
  void Reset();
  template <std::integral Number>
  void Bind(int index, Number number) {
    BindNumber(index, static_cast<int64_t>(number));
  }
  void Bind(int index, std::string_view text);
  void BindNumber(int index, int64_t number);

  sqlite3_stmt* mStatement = nullptr;
  bool mFailed = false;
};

}  // namespace kiln
