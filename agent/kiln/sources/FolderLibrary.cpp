#include "kiln/sources/FolderLibrary.h"

#include <utility>

namespace kiln {

FolderLibrary::FolderLibrary(const LibraryServices& services, wire::ReplicationKind kind)
    : mServices(services), mKind(kind), mWatch(services.context, FolderWatch::kContents, [this] {
        Sync({mKind, false}, nullptr);
      }) {}

FolderLibrary::~FolderLibrary() {
  if (mRun) mRun->Stop();
}

void FolderLibrary::SetSources(std::vector<FolderSource> sources) {
  if (sources == mSources) return;
  mSources = std::move(sources);
  mWatch.Clear();
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

void FolderLibrary::OnEnd(bool whole) {
  mRun = nullptr;
  const std::vector<FolderSync::Done> finished = std::exchange(mRunDone, {});
  if (mWanted) Next();
  for (const FolderSync::Done& done : finished) done(whole);
}

}  // namespace kiln
