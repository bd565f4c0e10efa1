#pragma once

#include <atomic>
#include <cstdint>
#include <map>
#include <set>
#include <string>

namespace kiln {

/// Copies files into a folder under names that nothing there has, whatever its case. Where a name is taken a
/// number follows: "Name 2.otf". Nothing is overwritten, and what can't be copied whole isn't left behind.
///
/// Thread: one at a time. Copying blocks.
class FontCopier {
 public:
  /// \param stopped  Read while copying: true makes the copy under way fail.
  FontCopier(std::string folder, const std::atomic<bool>& stopped);

  /// Makes the folder, with those above it, when it isn't there, and notes what is in it.
  /// \return 0, kCouldNotCreateFolder or kCannotWriteToDestinationFolder.
  uint32_t Prepare();

  /// \param name  The wanted file name.
  /// \param metrics  The AFM that goes with it, under the same name but for the extension; may be empty.
  /// \param copy  Receives the path of the copy.
  /// \return 0; kFontMissing when the source has gone; kDiskFull; kCouldNotCopyFile.
  uint32_t Copy(const std::string& source, const std::string& name, const std::string& metrics,
                std::string& copy);

 private:
  int CopyFile(const std::string& from, const std::string& to) const;
  int CopyBoth(const std::string& source, const std::string& path, const std::string& metrics,
               const std::string& metricsPath) const;

  const std::string mFolder;
  const std::atomic<bool>& mStopped;
  std::set<std::string> mTaken;                 // without case
  std::map<std::string, uint32_t> mLastNumber;  // of a name without case
};

}  // namespace kiln
