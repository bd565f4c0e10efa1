#pragma once

#include "CommandBinding.h"

/// Adds `hornbeam library` and all that lies below it.
void AddLibraryCommands(CLI::App& app, CommandToRun& run);
