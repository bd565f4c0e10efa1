#include "kiln/sources/OrphanSweep.h"

#include <boost/asio/post.hpp>
#include <utility>

#include "kiln/fonts/FontLibrary.h"

namespace kiln {

OrphanSweep::OrphanSweep(boost::asio::io_context& context, FontLibrary& library,
                         std::function<void(const std::vector<uint32_t>&)> removed)
    : mContext(context), mLibrary(library), mRemoved(std::move(removed)) {}

void OrphanSweep::Run() {
  if (std::exchange(mRunning, true)) {
    mRunAgain = true;
    return;
  }
  boost::asio::post(mContext, [this, alive = std::weak_ptr<bool>(mAlive)] {
    if (!alive.expired()) Slice();
  });
}

void OrphanSweep::RunBehind(const std::vector<wire::FontPlace>& deactivated) {
  constexpr uint32_t kNone = 0;
  for (const wire::FontPlace& font : deactivated) {
    if (!mLibrary.workgroups.OthersHold(kNone, font.font_id())) return Run();
  }
}

void OrphanSweep::Slice() {
  const std::vector<LibraryWriter::Orphan> orphans = mLibrary.writer.Orphans(mAfter);
  std::vector<uint32_t> gone;
  if (!orphans.empty()) {
    Transaction transaction(*mLibrary.database);
    bool fine = transaction.Began();
    for (const LibraryWriter::Orphan& orphan : orphans) {
      if (!fine) break;
      Vault::Remove(orphan.path);
      fine = mLibrary.writer.RemoveFile(orphan.id);
      gone.insert(gone.end(), orphan.fontIDs.begin(), orphan.fontIDs.end());
    }
    // What couldn't be written down is found again by the next sweep.
    if (!fine || transaction.Commit() != 0) gone.clear();
  }
  if (!gone.empty()) mRemoved(gone);
  mRunning = mAfter != 0;
  if (mRunning || std::exchange(mRunAgain, false)) {
    mRunning = false;
    Run();
  }
}

}  // namespace kiln
