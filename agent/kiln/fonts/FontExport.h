#pragma once

#include <atomic>
#include <boost/asio/io_context.hpp>
#include <boost/asio/steady_timer.hpp>
#include <boost/asio/thread_pool.hpp>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace kiln {

/// One run of copying font files into a folder of the user's. The names that the copies get are told in
/// Kiln.proto with ExportFontsRequest.
///
/// Life: Start(), then progress, then done, both on the thread of the io_context; or Stop(), after which
/// neither is called. The copying itself is the worker's, since folders may be slow. A file is there whole or
/// not at all, also when its run is stopped.
class FontExport : public std::enable_shared_from_this<FontExport> {
 public:
  struct File {
    std::string source;
    std::string name;          ///< wanted in the folder
    uint64_t size = 0;         ///< that the source must have; 0: any
    bool withMetrics = false;  ///< of Type 1: an AFM that lies beside the source goes with it
    std::string copy;          ///< receives the copy's path, empty with an error
    uint32_t error = 0;        ///< receives 0, kFontMissing, kCorrupt, kDiskFull or kCouldNotCopyFile
  };
  /// Twice a second. \param done  Files that are through, of all. \return False to stop the run.
  using Progress = std::function<bool(size_t done)>;
  /// \param error  0, kCouldNotCreateFolder or kCannotWriteToDestinationFolder; then no file was looked at.
  using Done = std::function<void(uint32_t error, const std::vector<File>& files)>;

  /// \param destination  Absolute; made when it isn't there.
  FontExport(boost::asio::io_context& context, std::string destination, std::vector<File> files,
             Progress progress, Done done);

  void Start(boost::asio::thread_pool& worker);
  /// Any thread. The worker gives up within a moment.
  void Stop() { mStopped = true; }

 private:
  void Tick();
  void Finish(uint32_t error);

  boost::asio::io_context& mContext;
  const std::string mDestination;
  std::vector<File> mFiles;  // the worker's until Finish()
  const Progress mProgress;
  const Done mDone;
  boost::asio::steady_timer mTimer;
  std::atomic<bool> mStopped = false;
  std::atomic<size_t> mFilesDone = 0;
  bool mFinished = false;
};

}  // namespace kiln
