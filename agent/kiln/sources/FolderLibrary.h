#pragma once

#include <sys/types.h>

#include <functional>
#include <memory>
#include <utility>
#include <vector>

#include "kiln/fonts/FolderWatch.h"
#include "kiln/sources/FolderSync.h"

namespace kiln {

/// Keeps workgroups equal to the font files of their folders: looks when told to, when something in a folder
/// has changed, and when a folder that had gone is back or another one has taken its place, one run at a
/// time.
class FolderLibrary {
 public:
  /// \param kind  Of the runs that begin by a change in a folder.
  FolderLibrary(const LibraryServices& services, wire::ReplicationKind kind);
  ~FolderLibrary();
  FolderLibrary(const FolderLibrary&) = delete;
  FolderLibrary& operator=(const FolderLibrary&) = delete;

  /// Which workgroups; they must be there. Others are left as they are now. Ends a run for the ones before.
  void SetSources(std::vector<FolderSource> sources);

  /// Looks now, or behind the run that is under way.
  /// \param done  Called once, not from within this call, unless the library goes before.
  void Sync(FolderSync::Options options, FolderSync::Done done);

 private:
  using Identities = std::vector<std::pair<dev_t, ino_t>>;

  Identities Folders() const;
  void Next();
  void OnEnd(bool whole);

  const LibraryServices& mServices;
  const wire::ReplicationKind mKind;
  std::vector<FolderSource> mSources;
  FolderWatch mWatch;
  FolderWatch mParents;  // the folders above, which show it when one comes back
  Identities mFolders;   // of the sources, as the last run found them
  std::shared_ptr<FolderSync> mRun;
  std::vector<FolderSync::Done> mRunDone;
  bool mWanted = false;  // another run, behind this one
  FolderSync::Options mNext;
  std::vector<FolderSync::Done> mNextDone;
  std::shared_ptr<bool> mAlive = std::make_shared<bool>(true);
};

}  // namespace kiln
