#include "System/Terminal.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <iostream>

namespace platform {

namespace {

std::atomic<Terminal*> replaced{nullptr};
constexpr int kUsualWidth = 80;

}  // namespace

bool Terminal::CanAsk() {
  return isatty(STDIN_FILENO) == 1 && isatty(STDERR_FILENO) == 1;
}

bool Terminal::ShowsProgress() {
  return isatty(STDERR_FILENO) == 1;
}

int Terminal::Width() {
  winsize size{};
  if (ioctl(STDERR_FILENO, TIOCGWINSZ, &size) != 0 || size.ws_col == 0) return kUsualWidth;
  return size.ws_col;
}

void Terminal::Write(const std::string& text) {
  size_t done = 0;
  while (done < text.size()) {
    const ssize_t written = write(STDERR_FILENO, text.data() + done, text.size() - done);
    if (written < 0 && errno != EINTR) return;
    if (written > 0) done += static_cast<size_t>(written);
  }
}

bool Terminal::AskLine(const std::string& prompt, std::string* line) {
  Write(prompt);
  std::string answer;
  if (!std::getline(std::cin, answer)) return false;
  *line = std::move(answer);
  return true;
}

Terminal& Terminal::Get() {
  static Terminal real;
  Terminal* replacement = replaced.load();
  return replacement != nullptr ? *replacement : real;
}

Terminal* Terminal::Replace(Terminal* replacement) {
  return replaced.exchange(replacement);
}

}  // namespace platform
