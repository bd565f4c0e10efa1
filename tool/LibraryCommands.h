#pragma once

#include <string>
#include <vector>

/// The subcommands of `hornbeam library`. Each prints its results on standard output and its complaints on
/// standard error, and gives an ExitCode.

struct LibraryAddOptions {
  std::vector<std::string> paths;
  std::string library;  ///< name or ID; empty for the first one
};
int RunLibraryAdd(const LibraryAddOptions& options);

struct LibraryListOptions {
  bool json = false;
};
int RunLibraryList(const LibraryListOptions& options);
