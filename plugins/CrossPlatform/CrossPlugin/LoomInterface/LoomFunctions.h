#pragma once

#include <CoreFoundation/CoreFoundation.h>

/// The table of the UI framework's entries, each pointer named `pf` and the entry's name. A null pointer is
/// an entry that the framework lacks.
struct LoomFunctions {
#define LOOM_ENTRY(result, name, ...) result (*pf##name)(__VA_ARGS__) = nullptr;
#include "LoomInterface/LoomEntries.h"
};
