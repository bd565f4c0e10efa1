#include "PathText.h"

#include <filesystem>

std::string AbsolutePath(const std::string& path) {
  std::error_code error;
  const std::filesystem::path full = std::filesystem::absolute(path, error);
  return error ? path : full.lexically_normal().string();
}
