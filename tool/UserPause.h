#pragma once

#include <functional>

/// Waits for the user: until a line or the end of standard input, SIGINT or SIGTERM. From the object's making
/// on the two signals no longer end the process, so that what follows the pause is still done.
class UserPause {
 public:
  UserPause();
  ~UserPause();
  UserPause(const UserPause&) = delete;
  UserPause& operator=(const UserPause&) = delete;

  /// Whether one of the signals has come. Stays true.
  bool IsInterrupted();

  /// \param work  Called again and again meanwhile; returns within a fraction of a second.
  void Wait(const std::function<void()>& work);

 private:
  int m_signals = -1;
  bool m_interrupted = false;
};
