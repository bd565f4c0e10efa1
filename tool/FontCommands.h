#pragma once

#include <string>
#include <vector>

/// The subcommands of `hornbeam library` that work on fonts named one by one, as LibraryCommands.h tells.

struct ActivateOptions {
  std::vector<std::string> fonts;
};
/// Activates fonts by hand: they stay until they are deactivated by hand. Of several of one name, the best.
int RunActivate(const ActivateOptions& options);

struct DeactivateOptions {
  std::vector<std::string> fonts;
};
/// Takes fonts, all of a name, away from every program.
int RunDeactivate(const DeactivateOptions& options);

struct ExportOptions {
  std::string folder;
  std::vector<std::string> fonts;
};
/// Copies the files of fonts, all of a name, into a folder.
int RunExport(const ExportOptions& options);

struct RefuseOptions {
  std::string library;
  std::vector<std::string> fonts;
};
/// Marks fonts of a library as not to be activated, and takes the mark back.
int RunRefuse(const RefuseOptions& options);
int RunAllow(const RefuseOptions& options);
