#pragma once

#include <cstddef>
#include <string>

/// "1 font", "2 fonts".
///
/// \param thing  One of it; an "s" makes it more.
std::string Amount(size_t count, const char* thing);
