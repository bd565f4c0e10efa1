#pragma once

#include <cstdint>
#include <ios>
#include <memory>
#include <streambuf>
#include <string_view>

/// The bytes of one file, for a stream that jumps about in it: reading and writing have a position each, and
/// what lies around the reading position stays in memory, so that a seek nearby costs no system call. The
/// read-ahead starts small and doubles while reads follow one another, up to 256 KiB.
///
/// Only a regular file is opened. A file that is cut short or can't be read meanwhile just ends early.
///
/// Thread: one.
class FileBuffer : public std::streambuf {
 public:
  FileBuffer() = default;
  FileBuffer(const FileBuffer&) = delete;
  FileBuffer& operator=(const FileBuffer&) = delete;
  ~FileBuffer() override;

  /// \param mode  std::ios_base::in, with `out` for writing too. Nothing is created or truncated.
  /// \return False when the file doesn't open, isn't a regular file, or one is open already.
  bool Open(const char* path, std::ios_base::openmode mode);
  /// \return False when nothing was open or the close fails; the file is closed in every case.
  bool Close();
  bool IsOpen() const { return m_descriptor >= 0; }

  /// How much a jump fetches, in bytes: a power of two up to 4096, which it is at first. For readers that
  /// jump to small things all over a large file.
  void SetPageSize(size_t bytes) { m_pageSize = bytes; }

  /// What follows the reading position, as far as it is in memory; at least one byte unless the file ends
  /// here. Valid until the next operation.
  std::string_view Ahead();
  /// Moves the reading position on over bytes that Ahead() gave.
  void Skip(size_t count) { setg(eback(), gptr() + count, egptr()); }

  int64_t ReadPosition() const { return m_windowStart + (gptr() - eback()); }

  /// Cuts the file to a length in bytes.
  bool Truncate(int64_t length);
  /// How many more bytes the file's disk takes; the largest number when it can't be told.
  uint64_t FreeSpace() const;

  /// How many bytes have been asked of the file so far, read-ahead included.
  uint64_t BytesFetched() const { return m_bytesFetched; }

 protected:
  int_type underflow() override;
  std::streamsize xsgetn(char* target, std::streamsize count) override;
  int_type overflow(int_type c) override;
  std::streamsize xsputn(const char* source, std::streamsize count) override;
  pos_type seekoff(off_type offset, std::ios_base::seekdir from, std::ios_base::openmode which) override;
  pos_type seekpos(pos_type position, std::ios_base::openmode which) override;

 private:
  void DropWindow(int64_t position);
  int64_t ReadAt(char* target, size_t count, int64_t position);

  int m_descriptor = -1;
  std::unique_ptr<char[]> m_window;
  int64_t m_windowStart = 0;  // file offset of eback()
  size_t m_pageSize = 4096;
  size_t m_readAhead = 0;
  int64_t m_lastFetchEnd = -1;
  int64_t m_writePosition = 0;
  uint64_t m_bytesFetched = 0;
};
