#include "kiln/system/BoundedLog.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdarg>
#include <cstdio>
#include <ctime>
#include <utility>

namespace kiln {
namespace {

constexpr size_t kLongestLine = 4096;

}  // namespace

BoundedLog::BoundedLog(std::string path, uint64_t bound) : mPath(std::move(path)), mBound(bound) {}

BoundedLog::~BoundedLog() {
  if (mFile >= 0) close(mFile);
}

void BoundedLog::Open() {
  mFile = open(mPath.c_str(), O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0600);
  struct stat found {};
  mSize = mFile >= 0 && fstat(mFile, &found) == 0 ? static_cast<uint64_t>(found.st_size) : 0;
}

void BoundedLog::Write(std::string_view text) {
  const time_t now = time(nullptr);
  tm parts{};
  localtime_r(&now, &parts);
  char stamp[32];
  strftime(stamp, sizeof stamp, "%Y-%m-%d %H:%M:%S ", &parts);
  std::string line = stamp;
  line.append(text.substr(0, kLongestLine));
  for (char& c : line) {
    if (static_cast<unsigned char>(c) < 0x20 || c == 0x7F) c = ' ';
  }
  line.push_back('\n');

  if (mFile < 0) Open();
  if (mFile >= 0 && mSize + line.size() > mBound) {
    close(mFile);
    std::rename(mPath.c_str(), (mPath + ".1").c_str());
    Open();
  }
  if (mFile >= 0) {
    const ssize_t written = write(mFile, line.data(), line.size());
    if (written > 0) mSize += static_cast<uint64_t>(written);
  }
  if (mEcho) std::fputs(line.c_str(), stderr);
}

void BoundedLog::Print(const char* format, ...) {
  char buffer[kLongestLine];
  va_list arguments;
  va_start(arguments, format);
  std::vsnprintf(buffer, sizeof buffer, format, arguments);
  va_end(arguments);
  Write(buffer);
}

}  // namespace kiln
