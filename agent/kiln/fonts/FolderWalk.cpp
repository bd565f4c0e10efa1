#include "kiln/fonts/FolderWalk.h"

#include <sys/stat.h>

#include <boost/asio/post.hpp>
#include <chrono>
#include <system_error>

#include "kiln/fonts/FontFileNames.h"

namespace kiln {
namespace {

constexpr int kDeepest = 64;
constexpr int64_t kNanosecondsPerSecond = 1'000'000'000;
constexpr std::chrono::milliseconds kSlice{5};

}  // namespace

void FolderWalk::Start(boost::asio::io_context& context, const std::string& folder,
                       std::function<void(const std::string&)> onFolder, Done done) {
  const auto walk = std::make_shared<FolderWalk>(context, std::move(onFolder), std::move(done));
  walk->mFolders.emplace_back(folder, 0);
  walk->Continue();
}

FolderWalk::FolderWalk(boost::asio::io_context& context, std::function<void(const std::string&)> onFolder,
                       Done done)
    : mContext(context), mOnFolder(std::move(onFolder)), mDone(std::move(done)) {}

void FolderWalk::Continue() {
  boost::asio::post(mContext, [self = shared_from_this()] { self->Slice(); });
}

void FolderWalk::Slice() {
  const auto end = std::chrono::steady_clock::now() + kSlice;
  while (std::chrono::steady_clock::now() < end) {
    if (!Step()) return mDone(mFound);
  }
  Continue();
}

// False when all is done.
bool FolderWalk::Step() {
  if (mEntry == std::filesystem::directory_iterator()) {
    if (mFolders.empty()) return false;
    Open();
    return true;
  }
  Take(*mEntry);
  std::error_code error;
  mEntry.increment(error);
  if (error) {
    mFound.unreadable.push_back(mFolder);
    mEntry = {};
  }
  return true;
}

void FolderWalk::Open() {
  std::tie(mFolder, mDepth) = std::move(mFolders.back());
  mFolders.pop_back();
  mOnFolder(mFolder);
  std::error_code error;
  mEntry = std::filesystem::directory_iterator(mFolder, error);
  if (mDepth == 0) mFound.readable = !error;
  // One that has gone meanwhile has nothing in it.
  const bool gone = error == std::errc::no_such_file_or_directory;
  if (error && !gone && mDepth > 0) mFound.unreadable.push_back(mFolder);
  if (error) mEntry = {};
}

void FolderWalk::Take(const std::filesystem::directory_entry& entry) {
  const std::string& path = entry.path().native();
  struct stat found {};
  if (lstat(path.c_str(), &found) != 0) return;
  if (S_ISDIR(found.st_mode)) {
    if (mDepth < kDeepest) mFolders.emplace_back(path, mDepth + 1);
  } else if (S_ISREG(found.st_mode) && IsNamedAsFont(path.substr(path.rfind('/') + 1))) {
    const int64_t modified = found.st_mtim.tv_sec * kNanosecondsPerSecond + found.st_mtim.tv_nsec;
    mFound.files[path] = {static_cast<uint64_t>(found.st_size), modified};
  }
}

}  // namespace kiln
