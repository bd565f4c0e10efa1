#pragma once

struct StatusOptions {
  bool json = false;
};

/// `hornbeam status`: says whether Kiln runs, and what it holds. Never starts it.
///
/// \return An ExitCode; kExitOk too when Kiln isn't running, which is an answer.
int RunStatus(const StatusOptions& options);
