#include "Parsers/UnlinkedFile.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>

UnlinkedFile::UnlinkedFile() {
  const char* folder = std::getenv("TMPDIR");
  m_name = std::string(folder != nullptr && *folder != '\0' ? folder : "/tmp") + "/hornbeam-XXXXXX";
  m_descriptor = mkostemp(m_name.data(), O_CLOEXEC);
  if (IsOpen()) unlink(m_name.c_str());
}

UnlinkedFile::~UnlinkedFile() {
  if (IsOpen()) close(m_descriptor);
}

std::string UnlinkedFile::Path() const {
  return "/proc/self/fd/" + std::to_string(m_descriptor);
}

bool UnlinkedFile::Write(const char* bytes, size_t count) {
  while (count > 0) {
    const ssize_t written = write(m_descriptor, bytes, count);
    if (written < 0 && errno == EINTR) continue;
    if (written <= 0) return false;
    bytes += written;
    count -= static_cast<size_t>(written);
    m_size += static_cast<size_t>(written);
  }
  return true;
}
