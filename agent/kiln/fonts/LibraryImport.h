#pragma once

#include <boost/asio/io_context.hpp>
#include <boost/asio/steady_timer.hpp>
#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "protocol/FontReading.pb.h"
#include "protocol/Kiln.pb.h"

namespace kiln {

class FontReaderPool;
struct FontLibrary;

/// One run of adding files to the library. Several may run at once: each file is read and copied by a child,
/// and written down in batches, so that a run that is cut off leaves whole files behind.
class LibraryImport : public std::enable_shared_from_this<LibraryImport> {
 public:
  using Progress = std::function<void(const wire::AddFilesProgress&)>;
  using Done = std::function<void(const wire::AddFilesReply&, const std::vector<uint32_t>& newFontIDs)>;

  /// \param progress  Called at least once a second and for every batch. Results come in the order of the
  ///                  files.
  /// \param done  Called once, behind the last progress, with the fonts that are new in the workgroup.
  LibraryImport(boost::asio::io_context& context, FontLibrary& library, FontReaderPool& readers,
                uint32_t workgroupID, Progress progress, Done done);

  /// \param paths  Absolute: files as they are, and folders as the font files in them and below, in the order
  ///               of their names. Links in a folder aren't followed. The metrics of a Type 1 font, named
  ///               together with it, are left out: they come with their font.
  void Start(const std::vector<std::string>& paths);
  void StartFiles(std::vector<std::string> files);
  /// Leaves out the files that no child was given yet. What is being read is still added; then done is
  /// called.
  void Stop();

 private:
  struct Arrival {
    size_t index = 0;  // in mPaths
    std::string path;
    std::string incoming;
    wire::ReadFile file;
  };

  void FindFiles();
  void Submit();
  void OnRead(Arrival arrival);
  void Tick();
  void StoreBatch();
  bool StoreOne(const Arrival& arrival, wire::AddedFile& result, std::vector<uint32_t>& newFonts);
  uint32_t StoreAll(const std::vector<Arrival>& batch, std::vector<wire::AddedFile>& results,
                    std::vector<uint32_t>& newFonts);
  void Count(const wire::AddedFile& result);
  void Report();

  boost::asio::io_context& mContext;
  FontLibrary& mLibrary;
  FontReaderPool& mReaders;
  const uint32_t mWorkgroupID;
  const Progress mProgress;
  Done mDone;
  boost::asio::steady_timer mTimer;
  std::deque<std::string> mNamed;  // not looked at yet
  std::set<std::string> mWalked;   // folders
  bool mFinding = false;
  std::vector<std::string> mPaths;
  size_t mSubmitted = 0;
  size_t mStored = 0;
  std::vector<Arrival> mArrived;
  std::map<size_t, wire::AddedFile> mUnreported;  // by index
  size_t mReported = 0;
  std::vector<std::string> mPlaced;  // in the vault by this batch, and not noted yet
  std::vector<uint32_t> mNewFonts;
  wire::AddFilesReply mTotals;
};

}  // namespace kiln
