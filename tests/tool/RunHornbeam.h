#pragma once

#include <string>
#include <vector>

#include "support/ProgramRun.h"

/// The programs as the build stages them.
inline constexpr char kHornbeam[] = HORNBEAM_STAGE "/bin/hornbeam";
inline constexpr char kKiln[] = HORNBEAM_STAGE "/lib/hornbeam/Kiln/Kiln";

struct HornbeamResult {
  int exitCode;
  std::string output;
  std::string errors;
};

/// Runs `hornbeam` to its end.
inline HornbeamResult RunHornbeam(const std::vector<std::string>& arguments) {
  ProgramRun run(kHornbeam, arguments);
  const int exitCode = run.Wait();
  return {exitCode, run.Output(), run.Errors()};
}
