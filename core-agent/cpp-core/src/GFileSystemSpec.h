#pragma once

#include <string>

#include "GTypes.h"

/// A full path: always absolute and expanded (no tilde, no symbolic link, no "." or ".."), or empty.
class GFileSystemSpec {
 public:
  GFileSystemSpec() = default;

  /// Takes a path as a user may have written it: double quotes at both ends are stripped, a tilde is
  /// expanded, and a partial path counts from the current directory. The spec is empty when that gives no
  /// valid path (a cycle of symbolic links, say).
  explicit GFileSystemSpec(const std::string& text);

  /// \return CoreErrorCodes::kInvalidParam, with the path unchanged, unless the expanded path is empty or a
  ///         valid full path.
  TErrCode SetFullPath(const std::string& path);

  const std::string& GetFullPath() const { return mFullPath; }
  bool IsEmpty() const { return mFullPath.empty(); }

  /// Joins by exactly one separator, whatever separators stand at the ends. The result isn't expanded again.
  void AppendPathComponent(const std::string& component);

  /// Cuts at the last separator; the root stays the root.
  void RemoveLastPathComponent();

  /// What stands behind the last separator.
  std::string GetLastPathComponent() const;

  bool operator==(const GFileSystemSpec&) const = default;

 private:
  std::string mFullPath;
};
