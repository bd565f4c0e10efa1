#pragma once

#include <chrono>
#include <cstddef>
#include <set>
#include <string>
#include <vector>

/// What the library asks of the process's font system. FontconfigSystem is the real one.
class FontSystem {
 public:
  virtual ~FontSystem() = default;

  /// Makes the fonts of the files visible to this process, on the calling thread.
  ///
  /// \return For each file, in order, whether a font of it can be seen now.
  virtual std::vector<bool> AddFiles(const std::vector<std::string>& files) = 0;

  /// Takes files of AddFiles() away again. Others are passed over.
  virtual void RemoveFiles(const std::vector<std::string>& files) = 0;

  /// As RemoveFiles(), but changes nothing that the host may be using: the files go with the next Reload().
  virtual void ForgetFiles(const std::vector<std::string>& files) = 0;

  /// Reads the system's font folders anew and keeps the added files. For a thread other than the host's.
  virtual void Reload() = 0;

  /// How many of the files are among the fonts of the system's font folders, as far as this process
  /// has read them.
  virtual std::size_t CountInFolders(const std::set<std::string>& files) = 0;

  /// Whether what the process sees is older than the font folders, or has lost the added files. Costs a stat
  /// a folder.
  virtual bool IsStale() = 0;

  /// How often IsStale() wants to be asked; 0 while the font system looks after itself.
  virtual std::chrono::seconds CheckInterval() = 0;
};
