#pragma once

namespace kiln {

/// The program Kiln, from its arguments to its exit status.
///
/// Life: it takes the session's lock, listens, opens the library, serves until SIGTERM, SIGINT or, with
/// --exit-when-idle, until no client has been there for a while; then tells its clients and ends.
///
/// \return 0 after a clean end, and for --help and --version; 1 when it can't run, another Kiln of the
/// session
///         among the reasons; 2 for wrong arguments. Each with one line on standard error, or, in the
///         background, in the log.
int RunKiln(int argc, char** argv);

}  // namespace kiln
