#include "kiln/fonts/VaultWatch.h"

#include <sys/stat.h>

#include <boost/asio/post.hpp>
#include <chrono>
#include <ctime>
#include <utility>

#include "kiln/fonts/FontLibrary.h"
#include "kiln/system/BoundedLog.h"
#include "protocol/ErrorCodes.h"

namespace kiln {
namespace {

constexpr std::chrono::seconds kBeforeFirstLook{1};
constexpr int64_t kNanoseconds = 1'000'000'000;
// File systems count time in steps: what happens within one of them shows no second change.
constexpr int64_t kCoarsestTime = 2 * kNanoseconds;

int64_t Nanoseconds(const timespec& time) {
  return int64_t{time.tv_sec} * kNanoseconds + time.tv_nsec;
}

// When something was last put into a folder or taken out; 0 when that isn't sure.
int64_t TimeOfChange(const std::string& folder) {
  struct stat found {};
  timespec now{};
  if (stat(folder.c_str(), &found) != 0 || clock_gettime(CLOCK_REALTIME, &now) != 0) return 0;
  const int64_t changed = Nanoseconds(found.st_mtim);
  return Nanoseconds(now) - changed > kCoarsestTime ? changed : 0;
}

std::string Digits(int number) {
  constexpr char kDigits[] = "0123456789abcdef";
  return {kDigits[number / 16], kDigits[number % 16]};
}

}  // namespace

VaultWatch::VaultWatch(boost::asio::io_context& context, FontLibrary& library, const KilnPaths& paths,
                       BoundedLog& log, Announce announce)
    : mContext(context),
      mLibrary(library),
      mPaths(paths),
      mLog(log),
      mAnnounce(std::move(announce)),
      mWatch(context, IN_CREATE | IN_DELETE | IN_MOVED_FROM | IN_MOVED_TO | IN_DELETE_SELF | IN_MOVE_SELF,
             [this] { OnChange(); }),
      mWrites(context, IN_MODIFY, [this] { Begin({}); }),
      mFirstLook(context) {}

std::string VaultWatch::PathOf(int number) const {
  return mPaths.vault + "/" + Digits(number);
}

void VaultWatch::WatchFolders() {
  mWatch.Add(mPaths.data);
  mWatch.Add(mPaths.vault);
  for (int i = 0; i < kFolders; ++i) {
    mWatch.Add(PathOf(i));
    mWrites.Add(PathOf(i));
  }
}

void VaultWatch::Start() {
  WatchFolders();
  mFirstLook.expires_after(kBeforeFirstLook);
  mFirstLook.async_wait([this, alive = std::weak_ptr<bool>(mAlive)](auto error) {
    if (!error && !alive.expired()) Begin({});
  });
}

void VaultWatch::Check(Progress progress, Done done) {
  Look look;
  look.progress = std::move(progress);
  look.done = std::move(done);
  Begin(std::move(look));
}

// New folders are watched before they are looked at, so that nothing falls in between.
void VaultWatch::OnChange() {
  WatchFolders();
  Look look;
  look.everything = false;
  Begin(std::move(look));
}

void VaultWatch::Begin(Look look) {
  look.total = mLibrary.vaultFiles.Count();
  const auto shared = std::make_shared<Look>(std::move(look));
  boost::asio::post(mContext, [this, shared, alive = std::weak_ptr<bool>(mAlive)] {
    if (!alive.expired()) Continue(shared);
  });
}

void VaultWatch::Continue(const std::shared_ptr<Look>& look) {
  if (look->next == kFolders) return End(*look, codes::kSuccess);
  if (const uint32_t error = LookAtFolder(look->next++, *look)) return End(*look, error);
  if (look->progress) look->progress(look->checked, look->total);
  boost::asio::post(mContext, [this, look, alive = std::weak_ptr<bool>(mAlive)] {
    if (!alive.expired()) Continue(look);
  });
}

uint32_t VaultWatch::LookAtFolder(int number, Look& look) {
  const int64_t changed = TimeOfChange(PathOf(number));
  int64_t& lookedAt = mLookedAt[static_cast<size_t>(number)];
  if (!look.everything && changed != 0 && changed == lookedAt) return codes::kSuccess;
  const std::vector<VaultFile> files = mLibrary.vaultFiles.WithHash(Digits(number));
  look.checked += static_cast<uint32_t>(files.size());
  if (files.empty()) return codes::kSuccess;
  const uint32_t error = mLibrary.vaultCheck.Look(files, look.change);
  lookedAt = error == codes::kSuccess ? changed : 0;
  return error;
}

void VaultWatch::End(Look& look, uint32_t error) {
  if (error != codes::kSuccess) mLog.Print("The vault couldn't be looked through: code 0x%08x", error);
  if (!look.change.missing.empty()) {
    mLog.Print("The files of %zu fonts are missing in '%s'", look.change.missing.size(),
               mPaths.vault.c_str());
  }
  if (look.done) look.done(error, look.checked);
  mAnnounce(look.change);
}

}  // namespace kiln
