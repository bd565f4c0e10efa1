#include "System/FileEvents.h"

#include <poll.h>
#include <sys/inotify.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstring>
#include <map>

namespace platform {

namespace {

constexpr std::uint32_t kAppeared = IN_CREATE | IN_MOVED_TO;
constexpr std::uint32_t kDisappeared = IN_DELETE | IN_MOVED_FROM | IN_DELETE_SELF | IN_MOVE_SELF;

class Inotify final : public FileEvents {
 public:
  explicit Inotify(int descriptor) : descriptor_(descriptor) {}
  ~Inotify() override { close(descriptor_); }
  Inotify(const Inotify&) = delete;
  Inotify& operator=(const Inotify&) = delete;

  int Watch(const std::string& folder) override {
    const int watch = inotify_add_watch(descriptor_, folder.c_str(),
                                        kAppeared | IN_CLOSE_WRITE | kDisappeared | IN_ONLYDIR);
    if (watch < 0) return errno;
    folders_[watch] = folder;
    return 0;
  }

  std::vector<FileEvent> Wait(std::chrono::milliseconds timeout) override {
    std::vector<FileEvent> events;
    pollfd ready = {descriptor_, POLLIN, 0};
    const auto wait = std::clamp<std::chrono::milliseconds::rep>(timeout.count(), 0, INT_MAX);
    if (poll(&ready, 1, static_cast<int>(wait)) <= 0) return events;
    alignas(inotify_event) char buffer[64 * (sizeof(inotify_event) + NAME_MAX + 1)];
    for (;;) {
      const ssize_t length = read(descriptor_, buffer, sizeof buffer);
      if (length <= 0) return events;
      for (ssize_t at = 0; at < length;) {
        inotify_event event;
        std::memcpy(&event, buffer + at, sizeof event);
        const char* name = buffer + at + sizeof event;
        Add(event, event.len == 0 ? "" : name, &events);
        at += static_cast<ssize_t>(sizeof event) + event.len;
      }
    }
  }

  int Descriptor() const override { return descriptor_; }

 private:
  void Add(const inotify_event& event, const std::string& name, std::vector<FileEvent>* events) {
    if ((event.mask & IN_Q_OVERFLOW) != 0) {
      events->push_back({FileEvent::Kind::kOverflow, {}});
      return;
    }
    const auto folder = folders_.find(event.wd);
    if (folder == folders_.end()) return;
    if ((event.mask & IN_IGNORED) != 0) {
      folders_.erase(folder);
      return;
    }
    const std::string path = name.empty() ? folder->second : folder->second + "/" + name;
    FileEvent::Kind kind = FileEvent::Kind::kChanged;
    if ((event.mask & kAppeared) != 0) kind = FileEvent::Kind::kAppeared;
    if ((event.mask & kDisappeared) != 0) kind = FileEvent::Kind::kDisappeared;
    events->push_back({kind, path});
  }

  const int descriptor_;
  std::map<int, std::string> folders_;
};

}  // namespace

std::unique_ptr<FileEvents> FileEvents::Create() {
  const int descriptor = inotify_init1(IN_CLOEXEC | IN_NONBLOCK);
  if (descriptor < 0) return nullptr;
  return std::make_unique<Inotify>(descriptor);
}

}  // namespace platform
