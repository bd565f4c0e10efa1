#pragma once

#include <vector>

/// The host's list type.
template <class T>
using K2Vector = std::vector<T>;
