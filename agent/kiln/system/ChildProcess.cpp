#include "kiln/system/ChildProcess.h"

#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <utility>

extern char** environ;

namespace kiln {
namespace {

struct Pipe {
  int ends[2] = {-1, -1};
  bool Open() { return pipe2(ends, O_CLOEXEC) == 0; }
  ~Pipe() {
    for (const int end : ends) {
      if (end >= 0) close(end);
    }
  }
  int Take(int index) { return std::exchange(ends[index], -1); }
};

}  // namespace

std::unique_ptr<ChildProcess> ChildProcess::Start(const std::string& program,
                                                  const std::vector<std::string>& arguments) {
  Pipe input;
  Pipe output;
  if (!input.Open() || !output.Open()) return nullptr;
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_adddup2(&actions, input.ends[0], STDIN_FILENO);
  posix_spawn_file_actions_adddup2(&actions, output.ends[1], STDOUT_FILENO);
  // Not Kiln's sockets: a child that outlives a killed Kiln would go on taking connections for it.
  posix_spawn_file_actions_addclosefrom_np(&actions, STDERR_FILENO + 1);
  // Kiln blocks and ignores signals for itself; the child begins as any program does.
  posix_spawnattr_t attributes;
  posix_spawnattr_init(&attributes);
  sigset_t none;
  sigset_t all;
  sigemptyset(&none);
  sigfillset(&all);
  posix_spawnattr_setsigmask(&attributes, &none);
  posix_spawnattr_setsigdefault(&attributes, &all);
  posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);

  std::vector<char*> argv{const_cast<char*>(program.c_str())};
  for (const std::string& argument : arguments) argv.push_back(const_cast<char*>(argument.c_str()));
  argv.push_back(nullptr);
  pid_t pid = 0;
  const int error = posix_spawn(&pid, program.c_str(), &actions, &attributes, argv.data(), environ);
  posix_spawnattr_destroy(&attributes);
  posix_spawn_file_actions_destroy(&actions);
  if (error != 0) {
    errno = error;
    return nullptr;
  }
  return std::unique_ptr<ChildProcess>(new ChildProcess(pid, input.Take(1), output.Take(0)));
}

ChildProcess::~ChildProcess() {
  if (mInput >= 0) close(mInput);
  if (mOutput >= 0) close(mOutput);
  // Not reaped yet, so the number is still this child's.
  kill(mPid, SIGKILL);
  while (waitpid(mPid, nullptr, 0) < 0 && errno == EINTR) continue;
}

int ChildProcess::TakeInput() {
  return std::exchange(mInput, -1);
}

int ChildProcess::TakeOutput() {
  return std::exchange(mOutput, -1);
}

}  // namespace kiln
