#pragma once

/// The whole of `hornbeam`: reads the command line, runs the subcommand.
///
/// \param argv  As main() gets it; UTF-8 paths, or whatever bytes the file system has.
/// \return An ExitCode.
int RunCommandLine(int argc, char** argv);
