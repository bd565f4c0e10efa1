#include "System/Processes.h"

#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <charconv>
#include <chrono>
#include <climits>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <optional>
#include <thread>

namespace platform {

namespace {

std::atomic<Processes*> replaced{nullptr};

constexpr std::string_view kSessionVariable = "XDG_RUNTIME_DIR=";

std::string FolderOf(pid_t pid) {
  return "/proc/" + std::to_string(pid);
}

std::optional<std::string> ReadAll(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  if (!in) return std::nullopt;
  std::string bytes{std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
  if (in.bad()) return std::nullopt;
  return bytes;
}

/// The environment that the process was started with; nothing when it may not be read. Just after its start a
/// process has neither arguments nor environment to show, for less than a millisecond.
std::optional<std::string> EnvironmentOf(pid_t pid) {
  constexpr int kTries = 50;
  std::optional<std::string> environment = ReadAll(FolderOf(pid) + "/environ");
  for (int i = 0; i < kTries && environment && environment->empty(); ++i) {
    const std::optional<std::string> arguments = ReadAll(FolderOf(pid) + "/cmdline");
    if (!arguments) return std::nullopt;
    const bool started = !arguments->empty();
    if (!started) std::this_thread::sleep_for(std::chrono::microseconds(100));
    environment = ReadAll(FolderOf(pid) + "/environ");
    if (started) break;
  }
  return environment;
}

/// The variable's value in the environment that the process was started with; "" when it isn't set, nothing
/// when the environment may not be read.
std::optional<std::string> SessionOf(pid_t pid) {
  const std::optional<std::string> environment = EnvironmentOf(pid);
  if (!environment) return std::nullopt;
  std::string_view rest = *environment;
  while (!rest.empty()) {
    const std::string_view entry = rest.substr(0, rest.find('\0'));
    if (entry.starts_with(kSessionVariable)) return std::string(entry.substr(kSessionVariable.size()));
    rest.remove_prefix(std::min(entry.size() + 1, rest.size()));
  }
  return std::string();
}

std::string OwnSession() {
  const char* value = std::getenv("XDG_RUNTIME_DIR");
  return value == nullptr ? "" : value;
}

/// "" for a zombie, a kernel thread, or a process that is gone or may not be looked at.
std::string ExecutableOf(pid_t pid) {
  char path[PATH_MAX];
  const ssize_t length = readlink((FolderOf(pid) + "/exe").c_str(), path, sizeof path);
  if (length <= 0) return {};
  std::string executable(path, static_cast<size_t>(length));
  // What the kernel appends when the file is gone; a file of that very name would still be there.
  constexpr std::string_view kDeleted = " (deleted)";
  if (executable.ends_with(kDeleted) && access(executable.c_str(), F_OK) != 0) {
    executable.resize(executable.size() - kDeleted.size());
  }
  return executable;
}

bool IsZombie(pid_t pid) {
  const std::optional<std::string> status = ReadAll(FolderOf(pid) + "/stat");
  if (!status) return false;
  // The state stands behind the name, which is in parentheses and may hold some.
  const size_t end = status->rfind(')');
  if (end == std::string::npos || end + 2 >= status->size()) return false;
  const char state = (*status)[end + 2];
  return state == 'Z' || state == 'X';
}

class SpawnSettings {
 public:
  SpawnSettings() {
    posix_spawn_file_actions_init(&actions_);
    posix_spawnattr_init(&attributes_);
  }
  ~SpawnSettings() {
    posix_spawn_file_actions_destroy(&actions_);
    posix_spawnattr_destroy(&attributes_);
  }
  SpawnSettings(const SpawnSettings&) = delete;
  SpawnSettings& operator=(const SpawnSettings&) = delete;

  int Apply(const LaunchOptions& options) {
    int error = 0;
    const auto note = [&error](int result) {
      if (error == 0) error = result;
    };
    const int given[] = {options.standardInput, options.standardOutput, options.standardError};
    for (int stream = STDIN_FILENO; stream <= STDERR_FILENO; ++stream) {
      if (given[stream] >= 0) {
        note(posix_spawn_file_actions_adddup2(&actions_, given[stream], stream));
      } else {
        const int mode = stream == STDIN_FILENO ? O_RDONLY : O_WRONLY;
        note(posix_spawn_file_actions_addopen(&actions_, stream, "/dev/null", mode, 0));
      }
    }
    note(posix_spawn_file_actions_addclosefrom_np(&actions_, STDERR_FILENO + 1));
    note(posix_spawn_file_actions_addchdir_np(&actions_, "/"));
    sigset_t all;
    sigset_t none;
    sigfillset(&all);
    sigemptyset(&none);
    note(posix_spawnattr_setsigdefault(&attributes_, &all));
    note(posix_spawnattr_setsigmask(&attributes_, &none));
    int flags = POSIX_SPAWN_SETSIGDEF | POSIX_SPAWN_SETSIGMASK;
    if (options.newSession) flags |= POSIX_SPAWN_SETSID;
    note(posix_spawnattr_setflags(&attributes_, static_cast<short>(flags)));
    return error;
  }

  const posix_spawn_file_actions_t* Actions() const { return &actions_; }
  const posix_spawnattr_t* Attributes() const { return &attributes_; }

 private:
  posix_spawn_file_actions_t actions_;
  posix_spawnattr_t attributes_;
};

}  // namespace

std::string RunningProcess::Name() const {
  return executable.substr(executable.rfind('/') + 1);
}

std::vector<RunningProcess> Processes::ListSession() {
  std::vector<RunningProcess> result;
  const std::string session = OwnSession();
  std::error_code error;
  for (std::filesystem::directory_iterator entry("/proc", error), last; !error && entry != last;
       entry.increment(error)) {
    const std::string name = entry->path().filename().string();
    pid_t pid = 0;
    const auto [end, bad] = std::from_chars(name.data(), name.data() + name.size(), pid);
    if (bad != std::errc() || end != name.data() + name.size()) continue;
    struct stat status {};
    if (stat(entry->path().c_str(), &status) != 0 || status.st_uid != geteuid()) continue;
    std::string executable = ExecutableOf(pid);
    if (executable.empty()) continue;
    // /proc shows what a process was started with; this one may have been moved to another session since.
    if (pid == getpid() || SessionOf(pid) == session) result.push_back({pid, std::move(executable)});
  }
  std::sort(result.begin(), result.end(),
            [](const RunningProcess& a, const RunningProcess& b) { return a.pid < b.pid; });
  return result;
}

int Processes::Launch(const std::string& executable, const std::vector<std::string>& arguments,
                      const LaunchOptions& options, pid_t* pid) {
  if (!executable.starts_with('/')) return EINVAL;
  SpawnSettings settings;
  if (const int error = settings.Apply(options); error != 0) return error;
  std::vector<char*> list = {const_cast<char*>(executable.c_str())};
  for (const std::string& argument : arguments) list.push_back(const_cast<char*>(argument.c_str()));
  list.push_back(nullptr);
  pid_t child = 0;
  const int error = posix_spawn(&child, executable.c_str(), settings.Actions(), settings.Attributes(),
                                list.data(), environ);
  if (error == 0) *pid = child;
  return error;
}

bool Processes::IsAlive(pid_t pid) {
  if (pid <= 0 || (kill(pid, 0) != 0 && errno != EPERM)) return false;
  return !IsZombie(pid);
}

ReapResult Processes::Reap(pid_t pid, int* status) {
  if (pid <= 0) return ReapResult::kNotOurs;
  int ended = 0;
  pid_t result = 0;
  do {
    result = waitpid(pid, &ended, WNOHANG);
  } while (result < 0 && errno == EINTR);
  if (result == 0) return ReapResult::kStillRunning;
  if (result < 0) return ReapResult::kNotOurs;
  if (status != nullptr) *status = ended;
  return ReapResult::kReaped;
}

int Processes::Signal(pid_t pid, int signal) {
  // 0 and below would mean whole groups.
  if (pid <= 0) return ESRCH;
  return kill(pid, signal) == 0 ? 0 : errno;
}

Processes& Processes::Get() {
  static Processes real;
  Processes* replacement = replaced.load();
  return replacement != nullptr ? *replacement : real;
}

Processes* Processes::Replace(Processes* replacement) {
  return replaced.exchange(replacement);
}

}  // namespace platform
