#pragma once

/// What `hornbeam` ends with.
enum ExitCode : int {
  kExitOk = 0,      ///< all went well
  kExitFailed = 1,  ///< something named on standard error did not; the rest was done
  kExitUsage = 2,   ///< the command line has no sense; nothing was done
};
