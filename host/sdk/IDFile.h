#pragma once

#include <string>
#include <utility>

/// Where a file lies: an absolute path in UTF-8, or nothing. The file need not exist.
class IDFile {
 public:
  IDFile() = default;
  explicit IDFile(std::string path) : m_sPath(std::move(path)) {}

  const std::string& GetPath() const { return m_sPath; }
  bool IsEmpty() const { return m_sPath.empty(); }

  friend bool operator==(const IDFile&, const IDFile&) = default;

 private:
  std::string m_sPath;
};
