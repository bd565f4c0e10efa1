#include "Parsers/FileBuffer.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>

namespace {

constexpr size_t kWindowSize = size_t{256} * 1024;

}  // namespace

FileBuffer::~FileBuffer() {
  if (IsOpen()) Close();
}

bool FileBuffer::Open(const char* path, std::ios_base::openmode mode) {
  if (IsOpen()) return false;
  const bool writes = (mode & std::ios_base::out) != 0;
  // Without O_NONBLOCK a pipe in the file's place would wait for its other end.
  m_descriptor = open(path, (writes ? O_RDWR : O_RDONLY) | O_CLOEXEC | O_NONBLOCK);
  if (!IsOpen()) return false;
  struct stat status {};
  if (fstat(m_descriptor, &status) != 0 || !S_ISREG(status.st_mode)) {
    Close();
    return false;
  }
  if (!m_window) m_window = std::make_unique_for_overwrite<char[]>(kWindowSize);
  DropWindow(0);
  m_readAhead = m_pageSize;
  m_lastFetchEnd = -1;
  m_writePosition = 0;
  m_bytesFetched = 0;
  return true;
}

bool FileBuffer::Close() {
  if (!IsOpen()) return false;
  const bool closed = close(m_descriptor) == 0;
  m_descriptor = -1;
  DropWindow(0);
  return closed;
}

std::string_view FileBuffer::Ahead() {
  if (gptr() == egptr()) underflow();
  return {gptr(), static_cast<size_t>(egptr() - gptr())};
}

bool FileBuffer::Truncate(int64_t length) {
  DropWindow(ReadPosition());
  return ftruncate(m_descriptor, length) == 0;
}

uint64_t FileBuffer::FreeSpace() const {
  struct statvfs status {};
  if (fstatvfs(m_descriptor, &status) != 0) return UINT64_MAX;
  return static_cast<uint64_t>(status.f_bavail) * status.f_frsize;
}

FileBuffer::int_type FileBuffer::underflow() {
  if (gptr() < egptr()) return traits_type::to_int_type(*gptr());
  if (!IsOpen()) return traits_type::eof();
  const int64_t position = ReadPosition();
  // A little earlier, so that a jump backwards by that falls into the window.
  const int64_t start = position - position % static_cast<int64_t>(m_pageSize / 16);
  m_readAhead = start == m_lastFetchEnd ? std::min(m_readAhead * 2, kWindowSize) : m_pageSize;
  const int64_t count = ReadAt(m_window.get(), m_readAhead, start);
  m_lastFetchEnd = start + count;
  if (start + count <= position) {
    DropWindow(position);
    return traits_type::eof();
  }
  m_windowStart = start;
  setg(m_window.get(), m_window.get() + (position - start), m_window.get() + count);
  return traits_type::to_int_type(*gptr());
}

std::streamsize FileBuffer::xsgetn(char* target, std::streamsize count) {
  std::streamsize done = 0;
  while (done < count) {
    const std::streamsize wanted = count - done;
    if (gptr() == egptr() && wanted >= static_cast<std::streamsize>(kWindowSize)) {
      const int64_t position = ReadPosition();
      const int64_t got = ReadAt(target + done, static_cast<size_t>(wanted), position);
      DropWindow(position + got);
      return done + got;
    }
    const std::string_view ahead = Ahead();
    if (ahead.empty()) break;
    const size_t piece = std::min(ahead.size(), static_cast<size_t>(wanted));
    std::memcpy(target + done, ahead.data(), piece);
    Skip(piece);
    done += static_cast<std::streamsize>(piece);
  }
  return done;
}

FileBuffer::int_type FileBuffer::overflow(int_type c) {
  if (traits_type::eq_int_type(c, traits_type::eof())) return traits_type::not_eof(c);
  const char byte = traits_type::to_char_type(c);
  return xsputn(&byte, 1) == 1 ? c : traits_type::eof();
}

std::streamsize FileBuffer::xsputn(const char* source, std::streamsize count) {
  DropWindow(ReadPosition());
  std::streamsize done = 0;
  while (done < count) {
    const ssize_t written =
        pwrite(m_descriptor, source + done, static_cast<size_t>(count - done), m_writePosition);
    if (written < 0 && errno == EINTR) continue;
    if (written <= 0) break;
    done += written;
    m_writePosition += written;
  }
  return done;
}

FileBuffer::pos_type FileBuffer::seekoff(off_type offset, std::ios_base::seekdir from,
                                         std::ios_base::openmode which) {
  const pos_type failed(off_type(-1));
  if (!IsOpen()) return failed;
  int64_t base = 0;
  if (from == std::ios_base::cur) {
    base = (which & std::ios_base::in) != 0 ? ReadPosition() : m_writePosition;
  } else if (from == std::ios_base::end) {
    struct stat status {};
    if (fstat(m_descriptor, &status) != 0) return failed;
    base = status.st_size;
  }
  int64_t position = 0;
  if (__builtin_add_overflow(base, offset, &position)) return failed;
  return seekpos(position, which);
}

FileBuffer::pos_type FileBuffer::seekpos(pos_type target, std::ios_base::openmode which) {
  const int64_t position = target;
  if (!IsOpen() || position < 0) return pos_type(off_type(-1));
  if ((which & std::ios_base::in) != 0) {
    if (position >= m_windowStart && position - m_windowStart <= egptr() - eback()) {
      setg(eback(), eback() + (position - m_windowStart), egptr());
    } else {
      DropWindow(position);
    }
  }
  if ((which & std::ios_base::out) != 0) m_writePosition = position;
  return position;
}

void FileBuffer::DropWindow(int64_t position) {
  m_windowStart = position;
  setg(m_window.get(), m_window.get(), m_window.get());
}

int64_t FileBuffer::ReadAt(char* target, size_t count, int64_t position) {
  size_t done = 0;
  while (done < count) {
    const ssize_t got =
        pread(m_descriptor, target + done, count - done, position + static_cast<int64_t>(done));
    if (got < 0 && errno == EINTR) continue;
    if (got <= 0) break;
    done += static_cast<size_t>(got);
  }
  m_bytesFetched += done;
  return static_cast<int64_t>(done);
}
