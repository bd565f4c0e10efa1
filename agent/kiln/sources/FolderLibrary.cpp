#include "kiln/sources/FolderLibrary.h"

#include <sys/stat.h>

#include <filesystem>
#include <utility>

namespace kiln {
namespace {

std::string ParentOf(std::string folder) {
  while (folder.size() > 1 && folder.back() == '/') folder.pop_back();
  return std::filesystem::path(folder).parent_path().string();
}

}  // namespace

FolderLibrary::FolderLibrary(const LibraryServices& services, wire::ReplicationKind kind)
    : mServices(services),
      mKind(kind),
      mWatch(services.context, FolderWatch::kContents,
             [this] {
               Sync({mKind, false}, nullptr);
             }),
      mParents(services.context, IN_CREATE | IN_MOVED_TO, [this] {
        if (Folders() != mFolders) Sync({mKind, false}, nullptr);
      }) {}

FolderLibrary::~FolderLibrary() {
  if (mRun) mRun->Stop();
}

void FolderLibrary::SetSources(std::vector<FolderSource> sources) {
  if (sources == mSources) return;
  mSources = std::move(sources);
  mWatch.Clear();
  mParents.Clear();
  if (mRun) mRun->Stop();
}

void FolderLibrary::Sync(FolderSync::Options options, FolderSync::Done done) {
  // What the clients were promised to be told isn't kept from them by a silent look that comes behind it.
  if (!mWanted || options.announce) mNext = options;
  mWanted = true;
  if (done) mNextDone.push_back(std::move(done));
  if (!mRun) Next();
}

void FolderLibrary::Next() {
  mWanted = false;
  mRunDone = std::exchange(mNextDone, {});
  for (const FolderSource& source : mSources) {
    mParents.Add(ParentOf(source.folder));
  }
  mFolders = Folders();
  const auto alive = std::weak_ptr<bool>(mAlive);
  mRun = std::make_shared<FolderSync>(
      mServices, mSources, mNext,
      // Watched before it is read: what comes meanwhile has another run follow.
      [this, alive](const std::string& folder) {
        if (!alive.expired()) mWatch.Add(folder);
      },
      [this, alive](bool whole) {
        if (!alive.expired()) OnEnd(whole);
      });
  mRun->Start();
}

// Which folders they are; none for one that isn't there.
FolderLibrary::Identities FolderLibrary::Folders() const {
  Identities folders;
  for (const FolderSource& source : mSources) {
    struct stat found {};
    const bool there = stat(source.folder.c_str(), &found) == 0;
    folders.emplace_back(there ? found.st_dev : 0, there ? found.st_ino : 0);
  }
  return folders;
}

void FolderLibrary::OnEnd(bool whole) {
  mRun = nullptr;
  const std::vector<FolderSync::Done> finished = std::exchange(mRunDone, {});
  if (mWanted) Next();
  for (const FolderSync::Done& done : finished) done(whole);
}

}  // namespace kiln
