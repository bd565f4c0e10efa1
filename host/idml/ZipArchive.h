#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

struct zip;

namespace idml {

/// A zip archive opened for reading, within the limits of Limits.h (ZIP File Format Specification of PKWARE,
/// by libzip). One object belongs to one thread.
class ZipArchive {
 public:
  /// \param path  A regular file; anything else (a pipe, a folder) is refused without waiting on it.
  /// \param error  Says on failure what is wrong, without the path.
  /// \return null on failure.
  static std::unique_ptr<ZipArchive> Open(const std::string& path, std::string& error);

  ~ZipArchive();
  ZipArchive(const ZipArchive&) = delete;
  ZipArchive& operator=(const ZipArchive&) = delete;

  bool Contains(const std::string& name) const;

  /// The names of all entries that begin with `prefix`, in the archive's order.
  std::vector<std::string> NamesWithPrefix(const std::string& prefix) const;

  /// Unpacks one entry and checks its checksum.
  ///
  /// \param error  Says on failure what is wrong, with the entry's name and without the path.
  /// \return the bytes, or nothing when the entry is missing, damaged, encrypted, or beyond a limit. What is
  ///         read counts against limits::kMaximumTotalSize over the life of the object.
  std::optional<std::string> Read(const std::string& name, std::string& error);

 private:
  explicit ZipArchive(zip* archive) : m_pArchive(archive) {}

  zip* m_pArchive;
  std::uint64_t m_nTotalRead = 0;
};

}  // namespace idml
