#pragma once

#include <map>
#include <string>

/// How many objects of each type live in the process, by the type's name ("CFString"); types without any are
/// left out. Constants and what the platform itself keeps for good (the main bundle, run loops) don't count.
///
/// Thread: any; the numbers are of one moment only when no other thread makes or releases objects.
std::map<std::string, long> LiveObjectCounts();
