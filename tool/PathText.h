#pragma once

#include <string>

/// The path from the root, as Kiln wants it: it reads paths in its own working directory. A path that can't
/// be completed stays as it is.
std::string AbsolutePath(const std::string& path);
