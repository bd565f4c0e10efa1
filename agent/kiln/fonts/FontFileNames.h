#pragma once

#include <string>

namespace kiln {

/// By the extension of a file's name.
bool IsNamedAsFont(const std::string& fileName);

/// Whether a file is the metrics of a Type 1 font that lies beside it, and so comes with it.
bool IsMetricsOfFont(const std::string& path);

}  // namespace kiln
