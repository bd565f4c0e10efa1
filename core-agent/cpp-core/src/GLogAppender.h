#pragma once

#include <string>

/// Receives the finished lines of GLogger.
class GLogAppender {
 public:
  GLogAppender() = default;
  GLogAppender(const GLogAppender&) = delete;
  GLogAppender& operator=(const GLogAppender&) = delete;
  virtual ~GLogAppender() = default;

  /// Takes one line, with its newline. Called under the logger's lock; what it logs itself is dropped.
  virtual void Append(const std::string& line) = 0;
};
