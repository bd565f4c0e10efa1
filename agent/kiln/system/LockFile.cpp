#include "kiln/system/LockFile.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>

namespace kiln {

LockFile::~LockFile() {
  if (mFile >= 0) close(mFile);
}

int LockFile::Take(const std::string& path) {
  const int file = open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0600);
  if (file < 0) return errno;
  if (flock(file, LOCK_EX | LOCK_NB) != 0) {
    const int error = errno;
    close(file);
    return error;
  }
  // The number is for people who look into the file; nothing reads it.
  if (ftruncate(file, 0) == 0) dprintf(file, "%d\n", getpid());
  mFile = file;
  return 0;
}

}  // namespace kiln
