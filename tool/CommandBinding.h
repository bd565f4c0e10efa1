#pragma once

#include <CLI/CLI.hpp>
#include <functional>
#include <memory>

/// What the command line turned out to ask for.
using CommandToRun = std::function<int()>;

/// Makes `run` call the function when the subcommand was given, and none of those below it.
///
/// \param run  Must live as long as the subcommand.
/// \return The function's options, for the subcommand's to be bound to; they live as long as it.
template <typename Options>
Options& BindCommand(CLI::App* command, CommandToRun& run, int (*function)(const Options&)) {
  const auto options = std::make_shared<Options>();
  command->callback([command, &run, options, function] {
    if (command->get_subcommands().empty()) run = [options, function] { return function(*options); };
  });
  return *options;
}
