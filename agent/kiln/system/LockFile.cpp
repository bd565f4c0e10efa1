#include "kiln/system/LockFile.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <cstdio>
#include <thread>

namespace kiln {
namespace {

constexpr int kTries = 25;
constexpr std::chrono::milliseconds kPause{20};

}  // namespace

LockFile::~LockFile() {
  if (mFile >= 0) close(mFile);
}

int LockFile::Take(const std::string& path) {
  const int file = open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0600);
  if (file < 0) return errno;
  for (int tries = 1; flock(file, LOCK_EX | LOCK_NB) != 0; ++tries) {
    const int error = errno;
    if (error == EWOULDBLOCK && tries < kTries) {
      std::this_thread::sleep_for(kPause);
      continue;
    }
    close(file);
    return error;
  }
  // The number is for people who look into the file; nothing reads it.
  if (ftruncate(file, 0) == 0) dprintf(file, "%d\n", getpid());
  mFile = file;
  return 0;
}

}  // namespace kiln
