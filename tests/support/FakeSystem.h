#pragma once

#include <algorithm>
#include <deque>
#include <string>
#include <vector>

#include "System/Clock.h"
#include "System/Processes.h"
#include "System/Terminal.h"

/// A process table that the test writes: nothing is really started.
class FakeProcesses : public platform::Processes {
 public:
  struct Launched {
    std::string executable;
    std::vector<std::string> arguments;
  };

  std::vector<platform::RunningProcess> ListSession() override { return running; }
  int Launch(const std::string& executable, const std::vector<std::string>& arguments,
             const platform::LaunchOptions&, pid_t* pid) override {
    if (launchError != 0) return launchError;
    launched.push_back({executable, arguments});
    running.push_back({nextPid, executable});
    *pid = nextPid++;
    return 0;
  }
  bool IsAlive(pid_t pid) override {
    return std::any_of(running.begin(), running.end(),
                       [pid](const auto& process) { return process.pid == pid; });
  }
  platform::ReapResult Reap(pid_t pid, int*) override {
    return IsAlive(pid) ? platform::ReapResult::kStillRunning : platform::ReapResult::kNotOurs;
  }
  int Signal(pid_t, int) override { return 0; }

  std::vector<platform::RunningProcess> running;
  std::vector<Launched> launched;
  int launchError = 0;
  pid_t nextPid = 1000000;
};

/// Time passes only by Sleep().
class FakeClock : public platform::Clock {
 public:
  std::chrono::steady_clock::time_point Now() override { return now; }
  std::chrono::system_clock::time_point WallNow() override {
    return std::chrono::system_clock::time_point(now.time_since_epoch());
  }
  void Sleep(std::chrono::nanoseconds duration) override {
    now += duration;
    slept += duration;
    ++sleeps;
  }

  std::chrono::steady_clock::time_point now{std::chrono::hours(1)};
  std::chrono::nanoseconds slept{0};
  int sleeps = 0;
};

/// A user whose answers are written beforehand.
class FakeTerminal : public platform::Terminal {
 public:
  bool CanAsk() override { return canAsk; }
  bool ShowsProgress() override { return showsProgress; }
  int Width() override { return width; }
  void Write(const std::string& text) override { written += text; }
  bool AskLine(const std::string& prompt, std::string* line) override {
    written += prompt;
    if (answers.empty()) return false;
    *line = answers.front();
    answers.pop_front();
    return true;
  }

  bool canAsk = true;
  bool showsProgress = true;
  int width = 80;
  std::deque<std::string> answers;
  std::string written;
};
