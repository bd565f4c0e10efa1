#pragma once

#include <sys/types.h>

#include <string>
#include <vector>

namespace platform {

struct RunningProcess {
  pid_t pid;
  /// The absolute path of its program, also when that file has been removed or replaced since.
  std::string executable;

  /// The last part of the path.
  std::string Name() const;
};

struct LaunchOptions {
  /// Descriptors for the child's standard streams; -1 is /dev/null.
  int standardInput = -1;
  int standardOutput = -1;
  int standardError = -1;
  /// A session of its own, so that the child outlives this program's terminal.
  bool newSession = true;
};

enum class ReapResult {
  kStillRunning,
  /// The child has ended and is gone from the process table.
  kReaped,
  /// No child of this process, or reaped before.
  kNotOurs
};

/// The programs of the user's session: those of the same user whose environment has the same XDG_RUNTIME_DIR.
///
/// Thread: any.
class Processes {
 public:
  virtual ~Processes() = default;

  /// What runs in this session, by rising process number; zombies are not among them.
  virtual std::vector<RunningProcess> ListSession();

  /// Starts a program with this process's environment in the folder "/", with default signals and no
  /// descriptor but the three standard ones.
  ///
  /// \param executable  An absolute path.
  /// \param arguments  Without the program's own name.
  /// \param pid  Receives the child, to be reaped by Reap(). Untouched on failure.
  /// \return 0, or the error number: ENOENT when there is no such file, EINVAL for a relative path.
  virtual int Launch(const std::string& executable, const std::vector<std::string>& arguments,
                     const LaunchOptions& options, pid_t* pid);

  /// Whether the process runs; a zombie doesn't.
  virtual bool IsAlive(pid_t pid);

  /// Never waits.
  ///
  /// \param status  Receives the status as waitpid() tells it. May be null.
  virtual ReapResult Reap(pid_t pid, int* status);

  /// \return 0 or the error number.
  virtual int Signal(pid_t pid, int signal);

  /// The operating system's, unless a test has put another in its place.
  static Processes& Get();
  /// \param replacement  Not owned; null brings the operating system's back.
  /// \return What was in place, null for the operating system's.
  static Processes* Replace(Processes* replacement);
};

}  // namespace platform
