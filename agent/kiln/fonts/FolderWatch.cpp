#include "kiln/fonts/FolderWatch.h"

#include <algorithm>
#include <utility>

namespace kiln {
namespace {

constexpr std::chrono::milliseconds kQuietTime{700};
// Behind a program that never stops writing.
constexpr std::chrono::seconds kLongestWait{10};

}  // namespace

FolderWatch::FolderWatch(boost::asio::io_context& context, uint32_t events, std::function<void()> changed)
    : mEvents(events), mChanged(std::move(changed)), mWatch(context), mQuiet(context) {}

void FolderWatch::Add(const std::string& folder) {
  if (!mWatch.is_open()) {
    const int watch = inotify_init1(IN_CLOEXEC | IN_NONBLOCK);
    if (watch < 0) return;
    mWatch.assign(watch);
    Wait();
  }
  inotify_add_watch(mWatch.native_handle(), folder.c_str(), mEvents | IN_ONLYDIR);
}

void FolderWatch::Clear() {
  boost::system::error_code ignored;
  mWatch.close(ignored);
  mQuiet.cancel();
  mChangeWaits = false;
  mAlive = std::make_shared<bool>(true);
}

void FolderWatch::Wait() {
  mWatch.async_read_some(boost::asio::buffer(mEventBytes),
                         [this, alive = std::weak_ptr<bool>(mAlive)](auto error, size_t) {
                           if (error || alive.expired()) return;
                           OnChange();
                           Wait();
                         });
}

void FolderWatch::OnChange() {
  const auto now = std::chrono::steady_clock::now();
  if (!std::exchange(mChangeWaits, true)) mFirstChange = now;
  mQuiet.expires_at(std::min(now + kQuietTime, mFirstChange + kLongestWait));
  mQuiet.async_wait([this, alive = std::weak_ptr<bool>(mAlive)](auto cancelled) {
    if (cancelled || alive.expired()) return;
    mChangeWaits = false;
    mChanged();
  });
}

}  // namespace kiln
