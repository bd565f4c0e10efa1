#pragma once

#include <cstdio>
#include <string>
#include <vector>

#include "GErrorCodes.h"
#include "GFileSystemSpec.h"

/// A file stream that answers by error codes and logs each failure ("FileSystem").
///
/// Life: closed; Open() makes it open; Close() or the destructor closes it. Operations on a closed file give
/// kFileNotOpen unless said otherwise. CoreErrorCodes::kError stands for a failure of the system's call.
/// Sizes, positions and counts are bytes; numbers are in native byte order. Not for several threads at once.
class GFile : public GFileCodes {
 public:
  /// Mode bits. All files are opened as binary; eBinary says so in the code.
  enum EMode : unsigned int { eRead = 1, eWrite = 2, eAppend = 4, eTruncate = 8, eBinary = 16 };
  enum EPosition : int { eBeginning = 0, eCurrent = 1, eEnd = 2 };

  GFile();
  GFile(const GFile&) = delete;
  GFile& operator=(const GFile&) = delete;
  virtual ~GFile();

  /// Opens by GetModeString(); a file that was open is closed first, whatever comes of it.
  ///
  /// \return GFileSystem::kFileNotFound for a file to be read that isn't there; else kOpenFailed, also for a
  ///         folder.
  virtual TErrCode Open(const GFileSystemSpec& spec, unsigned int mode);

  virtual TErrCode Close();
  virtual bool IsOpen() const;
  virtual const GFileSystemSpec& GetFileSpec() const;

  virtual TErrCode GetFileSize(TUInt64& outSize);

  /// Cuts or extends the named file, open or closed; what was written before is flushed first.
  virtual TErrCode SetFileSize(TUInt64 size);

  /// \return CoreErrorCodes::kInvalidParam for a position that isn't one of the three.
  virtual TErrCode SetFilePosition(EPosition position, long offset);
  virtual TErrCode GetFilePosition(TUInt64& outPosition);

  /// The rest of the file from the current position.
  virtual TErrCode Read(std::vector<char>& outBytes);
  virtual TErrCode Read(std::vector<unsigned char>& outBytes);
  virtual TErrCode Read(std::string& outText);

  /// Up to `count` bytes; fewer at the end of the file, none behind it, both with success.
  ///
  /// \return CoreErrorCodes::kOutOfMemory when there is no room for them.
  virtual TErrCode Read(TUInt64 count, std::vector<char>& outBytes);

  /// \return CoreErrorCodes::kError, with the number untouched, when the file ends before it.
  virtual TErrCode Read(TUInt16& outNumber);
  virtual TErrCode Read(TUInt32& outNumber);

  /// Leaves the file at the first occurrence of the bytes at or behind the starting point. The search only
  /// goes forward; `position` is the origin of `offset`.
  ///
  /// \return CoreErrorCodes::kNotFound, with the position unchanged; CoreErrorCodes::kInvalidParam for an
  ///         empty search.
  virtual TErrCode Find(const std::vector<char>& searchBytes, EPosition position, long offset);

  virtual TErrCode Write(const std::vector<char>& bytes);

  /// \return CoreErrorCodes::kInvalidParam for null bytes; GFileSystem::kDirectoryFull when the disk is full.
  virtual TErrCode Write(const char* bytes, TUInt64 count);
  virtual TErrCode Write(const std::string& text);
  virtual TErrCode Write(TUInt16 number);
  virtual TErrCode Write(TUInt32 number);

  virtual TErrCode Flush();

  /// Files have no resource fork here: always GFileSystem::kFileNotFound, with nothing opened, closed, made
  /// or emptied.
  virtual TErrCode OpenResourceFork(const GFileSystemSpec& spec, unsigned int mode);

  /// The mode of fopen() for the bits; empty for neither read nor write.
  static std::string GetModeString(unsigned int mode);

 protected:
  std::FILE* mpFile = nullptr;
  GFileSystemSpec mFSSpec;
  /// How much of the file Find() holds at once.
  TUInt64 mSearchBufferSize = 0x8000000;

 private:
  template <typename List>
  TErrCode ReadRest(List& outBytes);
  template <typename List>
  TErrCode ReadBytes(TUInt64 count, List& outBytes);
};
