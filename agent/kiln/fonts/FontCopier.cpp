#include "kiln/fonts/FontCopier.h"

#include <fcntl.h>
#include <fontconfig/fontconfig.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <system_error>
#include <utility>
#include <vector>

#include "protocol/ErrorCodes.h"

namespace kiln {
namespace {

constexpr size_t kLongestName = 255;  // bytes
constexpr size_t kChunk = size_t{256} * 1024;
constexpr mode_t kAsTheUserHasIt = 0666;
constexpr const char* kMetricsExtension = ".afm";

// As file systems without case compare names: by Unicode's case folding.
std::string WithoutCase(const std::string& name) {
  const std::unique_ptr<FcChar8, decltype(&std::free)> folded(
      FcStrDowncase(reinterpret_cast<const FcChar8*>(name.c_str())), &std::free);
  return folded ? reinterpret_cast<const char*>(folded.get()) : name;
}

// What stands before the extension, and the extension with its dot.
std::pair<std::string, std::string> Split(const std::string& name) {
  const size_t dot = name.rfind('.');
  if (dot == std::string::npos || dot == 0) return {name, ""};
  return {name.substr(0, dot), name.substr(dot)};
}

std::string Numbered(std::string stem, uint32_t number, const std::string& extension) {
  const std::string end = (number > 1 ? " " + std::to_string(number) : "") + extension;
  while (!stem.empty() && stem.size() + end.size() > kLongestName) {
    while ((static_cast<unsigned char>(stem.back()) & 0xC0) == 0x80 && stem.size() > 1) stem.pop_back();
    stem.pop_back();
  }
  return stem + end;
}

class Descriptor {
 public:
  explicit Descriptor(int number) : mNumber(number) {}
  ~Descriptor() { Close(); }
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;

  int Number() const { return mNumber; }
  // Some file systems tell only here that a disk was full.
  int Close() { return mNumber < 0 || close(std::exchange(mNumber, -1)) == 0 ? 0 : errno; }

 private:
  int mNumber;
};

int GiveName(int nameless, const std::string& path) {
  const std::string file = "/proc/self/fd/" + std::to_string(nameless);
  if (linkat(AT_FDCWD, file.c_str(), AT_FDCWD, path.c_str(), AT_SYMLINK_FOLLOW) == 0) return 0;
  return errno == ENOENT ? EIO : errno;
}

int WriteAll(int file, const char* data, size_t size) {
  while (size > 0) {
    const ssize_t count = write(file, data, size);
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) return errno;
    data += count;
    size -= static_cast<size_t>(count);
  }
  return 0;
}

}  // namespace

FontCopier::FontCopier(std::string folder, const std::atomic<bool>& stopped)
    : mFolder(std::move(folder)), mStopped(stopped) {}

uint32_t FontCopier::Prepare() {
  std::error_code error;
  std::filesystem::create_directories(mFolder, error);
  if (error || !std::filesystem::is_directory(mFolder, error)) return codes::kCouldNotCreateFolder;
  if (access(mFolder.c_str(), W_OK | X_OK) != 0) return codes::kCannotWriteToDestinationFolder;
  // A folder that can be written but not listed is all right: what is taken shows when a file is made.
  for (std::filesystem::directory_iterator entry(mFolder, error), end; !error && entry != end;
       entry.increment(error)) {
    mTaken.insert(WithoutCase(entry->path().filename()));
  }
  return codes::kSuccess;
}

int FontCopier::CopyFile(const std::string& from, const std::string& to) const {
  // Without waiting for whom nobody writes to.
  const Descriptor input(open(from.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
  struct stat found {};
  if (input.Number() < 0 || fstat(input.Number(), &found) != 0) return errno;
  if (!S_ISREG(found.st_mode)) return EINVAL;
  // Without a name until it is whole, so that a Kiln that is killed leaves no half of a font behind. Not
  // every file system has such files.
  const int nameless = open(mFolder.c_str(), O_TMPFILE | O_WRONLY | O_CLOEXEC, kAsTheUserHasIt);
  Descriptor output(
      nameless >= 0 ? nameless : open(to.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, kAsTheUserHasIt));
  // An ENOENT from here means the source.
  if (output.Number() < 0) return errno == ENOENT ? EIO : errno;
  std::vector<char> buffer(kChunk);
  int error = 0;
  while (error == 0) {
    const ssize_t count = read(input.Number(), buffer.data(), buffer.size());
    if (count == 0) break;
    if (count < 0 && errno == EINTR) continue;
    error = count < 0 ? errno : WriteAll(output.Number(), buffer.data(), static_cast<size_t>(count));
    if (mStopped) error = ECANCELED;
  }
  bool named = nameless < 0;
  if (error == 0 && !named) {
    error = GiveName(nameless, to);
    named = error == 0;
  }
  if (const int atEnd = output.Close(); error == 0) error = atEnd;
  if (error != 0 && named) unlink(to.c_str());
  return error;
}

int FontCopier::CopyBoth(const std::string& source, const std::string& path, const std::string& metrics,
                         const std::string& metricsPath) const {
  if (const int error = CopyFile(source, path)) return error;
  if (metrics.empty()) return 0;
  const int error = CopyFile(metrics, metricsPath);
  if (error != 0) unlink(path.c_str());
  return error == ENOENT ? EIO : error;
}

uint32_t FontCopier::Copy(const std::string& source, const std::string& name, const std::string& metrics,
                          std::string& copy) {
  const auto [stem, extension] = Split(name);
  uint32_t& number = mLastNumber[WithoutCase(name)];
  for (;;) {
    ++number;
    const std::string free = Numbered(stem, number, extension);
    const std::string freeMetrics = Numbered(stem, number, kMetricsExtension);
    const bool taken = mTaken.count(WithoutCase(free)) > 0;
    if (taken || (!metrics.empty() && mTaken.count(WithoutCase(freeMetrics)) > 0)) continue;
    const std::string path = mFolder + "/" + free;
    const int error = CopyBoth(source, path, metrics, mFolder + "/" + freeMetrics);
    if (error == EEXIST) continue;  // made by another program meanwhile
    if (error == 0) {
      mTaken.insert(WithoutCase(free));
      if (!metrics.empty()) mTaken.insert(WithoutCase(freeMetrics));
      copy = path;
      return codes::kSuccess;
    }
    --number;
    if (error == ENOENT) return codes::kFontMissing;
    return error == ENOSPC || error == EDQUOT ? codes::kDiskFull : codes::kCouldNotCopyFile;
  }
}

}  // namespace kiln
