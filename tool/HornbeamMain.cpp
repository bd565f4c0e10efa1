#include <fcntl.h>

#include <cstdio>

#include "CommandLine.h"
#include "Complaint.h"
#include "ExitCodes.h"

namespace {

// What is opened first takes the number of a standard stream that the caller has closed: a report would go
// into the connection to Kiln. Opened for reading only, so that writing still fails.
void KeepStandardStreamsApart() {
  for (int stream = 0; stream <= 2; ++stream) {
    if (fcntl(stream, F_GETFD) == -1) open("/dev/null", O_RDONLY);
  }
}

}  // namespace

int main(int argc, char** argv) {
  KeepStandardStreamsApart();
  const int exitCode = RunCommandLine(argc, argv);
  // A report that a full disk has swallowed is no success.
  const bool failedBefore = std::ferror(stdout) != 0;
  if (std::fflush(stdout) == 0 && !failedBefore) return exitCode;
  Complain("the output couldn't be written");
  return exitCode == kExitOk ? kExitFailed : exitCode;
}
