#pragma once

#include <string>

/// One line on standard error that tells how far long work has come, rewritten in place. Shown only when
/// standard error is a terminal; otherwise nothing is written at all.
class ProgressLine {
 public:
  explicit ProgressLine(std::string title);
  ProgressLine(const ProgressLine&) = delete;
  ProgressLine& operator=(const ProgressLine&) = delete;
  /// Wipes the line.
  ~ProgressLine();

  void Show(unsigned long done, unsigned long total);

  /// The same for calls to the agent; `progressLine` is one.
  static void Report(unsigned long done, unsigned long total, const char* path, void* progressLine);

 private:
  const std::string m_title;
  const bool m_visible;
  bool m_shown = false;
};
