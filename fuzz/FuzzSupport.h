#pragma once

#include <sys/mman.h>
#include <unistd.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "Memory/LiveObjects.h"

/// What fuzz targets share.

/// Ends the program with the broken promise when it doesn't hold.
inline void Promise(bool holds, const char* promise) {
  if (holds) return;
  std::fprintf(stderr, "Broken promise: %s\n", promise);
  std::abort();
}

/// A file in memory that programs can open by its path.
class MemoryFile {
 public:
  MemoryFile(const uint8_t* data, size_t size) : m_descriptor(memfd_create("fuzz", MFD_CLOEXEC)) {
    Promise(write(m_descriptor, data, size) == static_cast<ssize_t>(size), "memory can be written");
  }
  ~MemoryFile() { close(m_descriptor); }
  MemoryFile(const MemoryFile&) = delete;
  MemoryFile& operator=(const MemoryFile&) = delete;

  std::string Path() const { return "/proc/self/fd/" + std::to_string(m_descriptor); }

  std::string Bytes() const {
    std::string bytes(static_cast<size_t>(lseek(m_descriptor, 0, SEEK_END)), '\0');
    Promise(pread(m_descriptor, bytes.data(), bytes.size(), 0) == static_cast<ssize_t>(bytes.size()),
            "memory can be read");
    return bytes;
  }

 private:
  int m_descriptor;
};
