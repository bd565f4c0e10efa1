#pragma once

#include <string>

/// Long work on one line of the terminal, drawn over itself. Nothing is written where error output isn't a
/// terminal. Thread: main.
class Progress {
 public:
  void Show(const std::string& title);
  /// \param steps  0 or less when their number isn't known.
  void Update(const std::string& text, int step, int steps);
  void Hide();

 private:
  void Draw(const std::string& line);

  bool m_isShown = false;
  std::string m_title;
  std::string m_drawn;
};
