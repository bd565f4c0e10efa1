#include "UserPause.h"

#include <poll.h>
#include <sys/signalfd.h>
#include <unistd.h>

#include <csignal>

UserPause::UserPause() {
  sigset_t signals;
  sigemptyset(&signals);
  sigaddset(&signals, SIGINT);
  sigaddset(&signals, SIGTERM);
  // The client library's thread inherits the mask, so that only the descriptor hears the signals.
  pthread_sigmask(SIG_BLOCK, &signals, nullptr);
  m_signals = signalfd(-1, &signals, SFD_CLOEXEC | SFD_NONBLOCK);
}

UserPause::~UserPause() {
  close(m_signals);
}

bool UserPause::IsInterrupted() {
  signalfd_siginfo signal{};
  if (read(m_signals, &signal, sizeof signal) == static_cast<ssize_t>(sizeof signal)) m_interrupted = true;
  return m_interrupted;
}

void UserPause::Wait(const std::function<void()>& work) {
  while (!IsInterrupted()) {
    pollfd input{STDIN_FILENO, POLLIN, 0};
    if (poll(&input, 1, 0) > 0) return;
    work();
  }
}
