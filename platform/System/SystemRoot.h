#pragma once

#include <string>
#include <string_view>

namespace platform {

/// What stands in front of fixed places of the machine: the environment variable PLATFORM_SYSTEM_ROOT without
/// a
/// "/" at its end, default "". Private homes and tests set it.
std::string SystemRoot();

/// The fixed place `path` ("/Library/Frameworks/…") below the root.
std::string InSystemRoot(std::string_view path);

}  // namespace platform
