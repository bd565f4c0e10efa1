#include <cstdio>

#include "CommandLine.h"
#include "Complaint.h"
#include "ExitCodes.h"

int main(int argc, char** argv) {
  const int exitCode = RunCommandLine(argc, argv);
  // A report that a full disk has swallowed is no success.
  const bool failedBefore = std::ferror(stdout) != 0;
  if (std::fflush(stdout) == 0 && !failedBefore) return exitCode;
  Complain("the output couldn't be written");
  return exitCode == kExitOk ? kExitFailed : exitCode;
}
