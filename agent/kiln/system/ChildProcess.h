#pragma once

#include <sys/types.h>

#include <memory>
#include <string>
#include <vector>

namespace kiln {

/// A child whose standard input and output are pipes to this process. It inherits nothing else but standard
/// error. It doesn't outlive the object: what still runs then is killed, and it is always reaped.
class ChildProcess {
 public:
  /// \return Null, with errno set, when the program can't be started.
  static std::unique_ptr<ChildProcess> Start(const std::string& program,
                                             const std::vector<std::string>& arguments);
  ~ChildProcess();
  ChildProcess(const ChildProcess&) = delete;
  ChildProcess& operator=(const ChildProcess&) = delete;

  /// The ends of the pipes, which become the caller's to close. Each may be taken once.
  int TakeInput();
  int TakeOutput();

  pid_t Pid() const { return mPid; }

 private:
  ChildProcess(pid_t pid, int input, int output) : mPid(pid), mInput(input), mOutput(output) {}

  const pid_t mPid;
  int mInput;
  int mOutput;
};

}  // namespace kiln
