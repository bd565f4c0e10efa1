#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "kiln/fonts/FolderWalk.h"
#include "kiln/sources/LibraryServices.h"
#include "kiln/sources/ReplicationBoard.h"

namespace kiln {

class LibraryImport;

/// A workgroup and the folder that its fonts come from.
struct FolderSource {
  uint32_t workgroupID = 0;
  std::string folder;
  std::set<std::string> refused;  ///< PostScript names of fonts that aren't to be activated

  bool operator==(const FolderSource&) const = default;
};

/// One run of making workgroups equal to the font files of their folders. Only files that are new or have
/// changed are read. A folder that can't be read leaves its workgroup as it is.
///
/// Each batch of files is written down by itself, and a font leaves its workgroup only at the end, so that a
/// run that is cut off is ended by the next one.
class FolderSync : public std::enable_shared_from_this<FolderSync> {
 public:
  struct Options {
    wire::ReplicationKind kind = wire::REPLICATION_FONT_SERVER;
    bool announce = false;  ///< tell the clients of the run also when there is nothing to read
  };
  /// \param whole  All folders could be read, and the run wasn't stopped.
  using Done = std::function<void(bool whole)>;

  FolderSync(const LibraryServices& services, std::vector<FolderSource> sources, Options options,
             std::function<void(const std::string&)> onFolder, Done done);

  void Start();
  /// What is being read is still written down; then done is called.
  void Stop();

 private:
  struct File {
    std::string path;
    FolderFileStore::File known;
  };
  struct Work {
    FolderSource source;
    bool reached = false;
    std::vector<File> toRead;
    std::vector<std::string> gone;
  };

  void Walk();
  void Compare(FolderWalk::Found& found);
  void Import();
  void Take(const wire::AddFilesProgress& progress);
  bool Note(const wire::AddedFile& result, const File& file);
  void EndOne();
  void End();

  const LibraryServices& mServices;
  const Options mOptions;
  const std::function<void(const std::string&)> mOnFolder;
  const Done mDone;
  std::vector<Work> mWork;
  size_t mCurrent = 0;  // in mWork
  size_t mTaken = 0;    // files of the current one
  uint64_t mStep = 0;
  uint64_t mStepCount = 0;
  bool mStopped = false;
  bool mWhole = true;
  std::weak_ptr<LibraryImport> mImport;  // which holds this run
  std::unique_ptr<ReplicationBoard::Run> mRun;
  std::vector<uint32_t> mChanged;
};

}  // namespace kiln
