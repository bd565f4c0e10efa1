#pragma once

#include <CoreFoundation/CoreFoundation.h>

#include <istream>

#include "Parsers/FileBuffer.h"

/// A file to be read, or read and written, by byte offsets of 64 bits. Stream states and results are those of
/// std::iostream, which also gives read, gcount, write, get, peek, ignore, tellg, seekg, tellp, seekp, good,
/// eof and clear; the reading and the writing position are apart. See FileBuffer for what is opened.
///
/// Thread: one.
class FStreamWrapper : private FileBuffer, public std::iostream {
 public:
  FStreamWrapper();

  bool is_open() const { return IsOpen(); }
  /// Sets the fail bit when the close fails.
  void close();
  /// \param mode  Bits of std::ios_base::openmode; never truncates or creates. Sets the fail bit on failure,
  /// and clears the state on success.
  void open(const char* path, unsigned mode);

  /// The file's length in bytes; -1 while the stream is bad. The reading position stays.
  long long GetStreamLength();

  /// Appends zeros up to that length in bytes; does nothing to a file that is as long. The writing position
  /// stays.
  ///
  /// \return True; failures show in the stream's state.
  bool LengthenFileStream(long long newLength);

  /// The bytes themselves, for readers that scan: no stream states.
  FileBuffer& Buffer() { return *this; }
};

/// Reads `*count` bytes.
///
/// \return 0, or -1 when not all of them came; the stream stays usable then if it was the end of the file.
///         `*count` is never changed.
int ReadStream(FStreamWrapper& stream, unsigned long* count, void* buffer);

/// Writes `*count` bytes.
///
/// \return 0, or -1 when the writing position moved by less.
int WriteStream(FStreamWrapper& stream, unsigned long* count, const void* buffer);

/// Opens a file by its URL, else by its path as UTF-8, else by its path in the system's default encoding.
/// Each failure is traced.
///
/// \param url  May be null; `path` counts then.
/// \param readOnly  False opens for writing too. Nothing is created or truncated in either case.
/// \return Whether the stream is open.
bool OpenFileStreamFromCFURLRef(CFURLRef url, CFStringRef path, FStreamWrapper* stream, bool readOnly);
