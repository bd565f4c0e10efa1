#pragma once

#include <string>

namespace platform {

/// The user's terminal, when there is one.
///
/// Thread: main.
class Terminal {
 public:
  virtual ~Terminal() = default;

  /// Whether questions can be asked: input and error output are terminals.
  virtual bool CanAsk();
  /// Whether the error output, where progress is shown, is a terminal.
  virtual bool ShowsProgress();
  /// Columns of the error output; 80 when unknown.
  virtual int Width();
  /// Writes to the error output, where it doesn't mix with results.
  virtual void Write(const std::string& text);
  /// Shows the prompt and reads a line, without its end.
  ///
  /// \return False at the end of the input, with `line` untouched.
  virtual bool AskLine(const std::string& prompt, std::string* line);

  /// The process's own, unless a test has put another in its place.
  static Terminal& Get();
  /// \param replacement  Not owned; null brings the process's own back.
  /// \return What was in place, null for the process's own.
  static Terminal* Replace(Terminal* replacement);
};

}  // namespace platform
