#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <filesystem>
#include <thread>

#include "System/Processes.h"
#include "support/ScopedEnvironment.h"
#include "support/TemporaryFolder.h"

namespace {

using platform::Processes;
using platform::ReapResult;

/// Waits for the child's end; the test program's own time limit is the deadline.
int WaitFor(pid_t pid) {
  int status = 0;
  while (Processes::Get().Reap(pid, &status) == ReapResult::kStillRunning) std::this_thread::yield();
  return status;
}

bool IsListed(pid_t pid, const std::string& name) {
  const auto list = Processes::Get().ListSession();
  return std::any_of(list.begin(), list.end(),
                     [&](const auto& running) { return running.pid == pid && running.Name() == name; });
}

TEST(Processes, AChildIsListedUntilItEnds) {
  const TemporaryFolder folder;
  const ScopedEnvironment session("XDG_RUNTIME_DIR", folder.Path());
  const std::string program = folder.Path("a program with a long (odd) name");
  std::filesystem::copy_file("/bin/sleep", program);
  pid_t pid = 0;
  ASSERT_EQ(Processes::Get().Launch(program, {"3600"}, {}, &pid), 0);
  EXPECT_TRUE(Processes::Get().IsAlive(pid));
  EXPECT_TRUE(IsListed(pid, "a program with a long (odd) name"));
  EXPECT_TRUE(IsListed(getpid(), std::filesystem::read_symlink("/proc/self/exe").filename().string()));
  std::filesystem::remove(program);
  EXPECT_TRUE(IsListed(pid, "a program with a long (odd) name"));
  {
    const ScopedEnvironment other("XDG_RUNTIME_DIR", "/elsewhere");
    EXPECT_FALSE(IsListed(pid, "a program with a long (odd) name"));
  }
  EXPECT_EQ(getsid(pid), pid);
  EXPECT_EQ(Processes::Get().Reap(pid, nullptr), ReapResult::kStillRunning);
  EXPECT_EQ(Processes::Get().Signal(pid, SIGKILL), 0);
  // A zombie is neither listed nor alive.
  siginfo_t ended;
  ASSERT_EQ(waitid(P_PID, static_cast<id_t>(pid), &ended, WEXITED | WNOWAIT), 0);
  EXPECT_FALSE(Processes::Get().IsAlive(pid));
  EXPECT_FALSE(IsListed(pid, "a program with a long (odd) name"));
  const int status = WaitFor(pid);
  EXPECT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == SIGKILL);
  EXPECT_EQ(Processes::Get().Reap(pid, nullptr), ReapResult::kNotOurs);
}

TEST(Processes, AChildInheritsNothingButItsStreams) {
  const TemporaryFolder folder;
  const int leaked = open("/dev/zero", O_RDONLY);
  ASSERT_GE(leaked, 0);
  const int output = open(folder.Path("out").c_str(), O_CREAT | O_WRONLY | O_CLOEXEC, 0600);
  signal(SIGUSR1, SIG_IGN);
  sigset_t blocked;
  sigemptyset(&blocked);
  sigaddset(&blocked, SIGUSR2);
  pthread_sigmask(SIG_BLOCK, &blocked, nullptr);
  platform::LaunchOptions options;
  options.standardOutput = output;
  pid_t pid = 0;
  const std::string script =
      "for fd in /proc/$$/fd/*; do echo ${fd##*/} $(readlink $fd); done; pwd; grep -E 'Sig(Blk|Ign)' "
      "/proc/$$/status";
  ASSERT_EQ(Processes::Get().Launch("/bin/bash", {"-c", script}, options, &pid), 0);
  EXPECT_EQ(WaitFor(pid), 0);
  close(output);
  close(leaked);
  signal(SIGUSR1, SIG_DFL);
  pthread_sigmask(SIG_UNBLOCK, &blocked, nullptr);
  const std::string seen = folder.Read("out");
  EXPECT_NE(seen.find("0 /dev/null\n1 " + folder.Path("out") + "\n2 /dev/null\n"), std::string::npos) << seen;
  EXPECT_EQ(seen.find("/dev/zero"), std::string::npos) << seen;
  EXPECT_NE(seen.find("\n/\n"), std::string::npos) << seen;
  EXPECT_NE(seen.find("SigBlk:\t0000000000000000"), std::string::npos) << seen;
  const unsigned long ignored = std::stoul(seen.substr(seen.find("SigIgn:\t") + 8), nullptr, 16);
  EXPECT_EQ(ignored & (1UL << (SIGUSR1 - 1)), 0U) << seen;
}

TEST(Processes, AFailedStartSaysWhy) {
  const TemporaryFolder folder;
  folder.Write("plain", "text");
  pid_t pid = -7;
  EXPECT_EQ(Processes::Get().Launch(folder.Path("absent"), {}, {}, &pid), ENOENT);
  EXPECT_EQ(Processes::Get().Launch(folder.Path("plain"), {}, {}, &pid), EACCES);
  EXPECT_EQ(Processes::Get().Launch("sleep", {}, {}, &pid), EINVAL);
  EXPECT_EQ(pid, -7);
  EXPECT_FALSE(Processes::Get().IsAlive(0));
  EXPECT_EQ(Processes::Get().Signal(-1, 0), ESRCH);
}

}  // namespace
