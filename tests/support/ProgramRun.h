#pragma once

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <string>
#include <thread>
#include <vector>

#include "System/Processes.h"
#include "support/TemporaryFolder.h"

/// A program run as a user runs it: own process, output kept, input held open until the test ends it.
class ProgramRun {
 public:
  ProgramRun(const std::string& program, const std::vector<std::string>& arguments) {
    int input[2] = {-1, -1};
    if (pipe2(input, O_CLOEXEC) != 0) throw std::runtime_error("No pipe");
    m_input = input[1];
    platform::LaunchOptions options;
    options.standardInput = input[0];
    options.standardOutput = open(m_folder.Path("out").c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0600);
    options.standardError = open(m_folder.Path("err").c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0600);
    const int error = platform::Processes::Get().Launch(program, arguments, options, &m_pid);
    for (int descriptor : {options.standardInput, options.standardOutput, options.standardError}) {
      close(descriptor);
    }
    if (error != 0) throw std::runtime_error("Can't start " + program);
  }

  ~ProgramRun() {
    EndInput();
    if (m_pid > 0) {
      platform::Processes::Get().Signal(m_pid, SIGKILL);
      waitpid(m_pid, nullptr, 0);
    }
  }

  ProgramRun(const ProgramRun&) = delete;
  ProgramRun& operator=(const ProgramRun&) = delete;

  void EndInput() {
    if (m_input >= 0) close(m_input);
    m_input = -1;
  }

  void Signal(int signal) { platform::Processes::Get().Signal(m_pid, signal); }

  /// Waits until the output holds a text; false when the program ended without.
  bool WaitForOutput(const std::string& text) {
    for (;;) {
      const bool running = platform::Processes::Get().IsAlive(m_pid);
      if (Output().find(text) != std::string::npos) return true;
      if (!running) return false;
      std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
  }

  /// Ends the input and waits. The exit code, or 128 and the signal.
  int Wait() {
    EndInput();
    int status = 0;
    waitpid(m_pid, &status, 0);
    m_pid = -1;
    return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
  }

  std::string Output() const { return m_folder.Read("out"); }
  std::string Errors() const { return m_folder.Read("err"); }

 private:
  TemporaryFolder m_folder;
  pid_t m_pid = -1;
  int m_input = -1;
};
