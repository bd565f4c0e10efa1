#include "GFile.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <new>
#include <type_traits>

#include "GErrors.h"
#include "GFileSystem.h"

namespace {

constexpr const char* kIdentifier = "FileSystem";

std::string OSGetModeString(const std::string& mode) {
  return mode.empty() ? mode : mode + "b";
}

bool IsFolder(std::FILE* file) {
  struct stat status {};
  return fstat(fileno(file), &status) == 0 && S_ISDIR(status.st_mode);
}

}  // namespace

#define FILE_CHECK(expression) GCHECK(expression, kIdentifier, GLogger::eError)
#define FILE_FAIL_IF(condition, code) GFAIL_IF(condition, TErrCode{code}, kIdentifier, GLogger::eError)
#define RETURN_IF_FAILED(status) \
  if ((status) != CoreErrorCodes::kSuccess) return status

GFile::GFile() = default;

GFile::~GFile() {
  if (mpFile != nullptr) std::fclose(mpFile);
}

TErrCode GFile::Open(const GFileSystemSpec& spec, unsigned int mode) {
  if (mpFile != nullptr) FILE_CHECK(GFile::Close());
  mFSSpec = spec;
  const std::string modeString = GetModeString(mode);
  errno = 0;
  if (!modeString.empty()) {
    mpFile = std::fopen(spec.GetFullPath().c_str(), (modeString + "e").c_str());
  }
  if (mpFile == nullptr) {
    const int error = errno;
    if ((mode & GFile::eRead) != 0 && error == ENOENT) {
      return GErrors::Report(GFileSystem::kFileNotFound, kIdentifier, GLogger::eError,
                             "((mpFile == NULL) && ((mode & GFile::eRead) != 0) && (errno == ENOENT))",
                             __FILE__, __LINE__);
    }
    return FILE_CHECK(kOpenFailed);
  }
  if (IsFolder(mpFile)) {  // which fopen() opens for reading
    std::fclose(mpFile);
    mpFile = nullptr;
    return FILE_CHECK(kOpenFailed);
  }
  return CoreErrorCodes::kSuccess;
}

TErrCode GFile::Close() {
  TErrCode status = FILE_FAIL_IF(!IsOpen(), kFileNotOpen);
  RETURN_IF_FAILED(status);
  std::FILE* const file = mpFile;
  mpFile = nullptr;
  return FILE_FAIL_IF(std::fclose(file) != 0, CoreErrorCodes::kError);
}

bool GFile::IsOpen() const {
  return mpFile != nullptr;
}

const GFileSystemSpec& GFile::GetFileSpec() const {
  return mFSSpec;
}

TErrCode GFile::GetFileSize(TUInt64& outSize) {
  TErrCode status = FILE_FAIL_IF(!IsOpen(), kFileNotOpen);
  RETURN_IF_FAILED(status);
  const long oldPosition = std::ftell(mpFile);
  status = FILE_FAIL_IF(oldPosition < 0 || std::fseek(mpFile, 0, SEEK_END) != 0, CoreErrorCodes::kError);
  RETURN_IF_FAILED(status);
  const long size = std::ftell(mpFile);
  status = FILE_FAIL_IF(std::fseek(mpFile, oldPosition, SEEK_SET) != 0 || size < 0, CoreErrorCodes::kError);
  RETURN_IF_FAILED(status);
  outSize = static_cast<TUInt64>(size);
  return status;
}

TErrCode GFile::SetFileSize(TUInt64 size) {
  if (IsOpen()) {
    const TErrCode status = FILE_CHECK(Flush());
    RETURN_IF_FAILED(status);
  }
  return FILE_FAIL_IF(truncate(mFSSpec.GetFullPath().c_str(), static_cast<off_t>(size)) != 0,
                      CoreErrorCodes::kError);
}

TErrCode GFile::SetFilePosition(EPosition position, long offset) {
  TErrCode status = FILE_FAIL_IF(!IsOpen(), kFileNotOpen);
  RETURN_IF_FAILED(status);
  status = FILE_FAIL_IF(position < eBeginning || position > eEnd, CoreErrorCodes::kInvalidParam);
  RETURN_IF_FAILED(status);
  constexpr int kOrigins[] = {SEEK_SET, SEEK_CUR, SEEK_END};
  return FILE_FAIL_IF(std::fseek(mpFile, offset, kOrigins[position]) != 0, CoreErrorCodes::kError);
}

TErrCode GFile::GetFilePosition(TUInt64& outPosition) {
  TErrCode status = FILE_FAIL_IF(!IsOpen(), kFileNotOpen);
  RETURN_IF_FAILED(status);
  const long position = std::ftell(mpFile);
  status = FILE_FAIL_IF(position < 0, CoreErrorCodes::kError);
  if (status == CoreErrorCodes::kSuccess) outPosition = static_cast<TUInt64>(position);
  return status;
}

template <typename List>
TErrCode GFile::ReadBytes(TUInt64 count, List& outBytes) {
  TUInt64 size = 0;
  TUInt64 position = 0;
  TErrCode status = FILE_CHECK(GetFileSize(size));
  RETURN_IF_FAILED(status);
  status = FILE_CHECK(GetFilePosition(position));
  RETURN_IF_FAILED(status);
  try {
    outBytes.resize(std::min(count, size > position ? size - position : 0));
  } catch (const std::exception&) {
    return FILE_CHECK(CoreErrorCodes::kOutOfMemory);
  }
  std::clearerr(mpFile);
  const std::size_t read = std::fread(outBytes.data(), 1, outBytes.size(), mpFile);
  outBytes.resize(read);
  return FILE_FAIL_IF(std::ferror(mpFile) != 0, CoreErrorCodes::kError);
}

template <typename List>
TErrCode GFile::ReadRest(List& outBytes) {
  TUInt64 size = 0;
  TUInt64 position = 0;
  TErrCode status = FILE_CHECK(GetFileSize(size));
  RETURN_IF_FAILED(status);
  status = FILE_CHECK(GetFilePosition(position));
  RETURN_IF_FAILED(status);
  return ReadBytes(size > position ? size - position : 0, outBytes);
}

TErrCode GFile::Read(std::vector<char>& outBytes) {
  return ReadRest(outBytes);
}

TErrCode GFile::Read(std::vector<unsigned char>& outBytes) {
  return ReadRest(outBytes);
}

TErrCode GFile::Read(std::string& outText) {
  return ReadRest(outText);
}

TErrCode GFile::Read(TUInt64 count, std::vector<char>& outBytes) {
  return ReadBytes(count, outBytes);
}

TErrCode GFile::Read(TUInt16& outNumber) {
  std::vector<char> bytes;
  TErrCode status = FILE_CHECK(Read(sizeof(TUInt16), bytes));
  RETURN_IF_FAILED(status);
  status = FILE_FAIL_IF(bytes.size() != sizeof(TUInt16), CoreErrorCodes::kError);
  if (status == CoreErrorCodes::kSuccess) std::memcpy(&outNumber, bytes.data(), sizeof(TUInt16));
  return status;
}

TErrCode GFile::Read(TUInt32& outNumber) {
  std::vector<char> bytes;
  TErrCode status = FILE_CHECK(Read(sizeof(TUInt32), bytes));
  RETURN_IF_FAILED(status);
  status = FILE_FAIL_IF(bytes.size() != sizeof(TUInt32), CoreErrorCodes::kError);
  if (status == CoreErrorCodes::kSuccess) std::memcpy(&outNumber, bytes.data(), sizeof(TUInt32));
  return status;
}

TErrCode GFile::Write(const std::vector<char>& bytes) {
  return bytes.empty() ? FILE_FAIL_IF(!IsOpen(), kFileNotOpen) : Write(bytes.data(), bytes.size());
}

TErrCode GFile::Write(const char* bytes, TUInt64 count) {
  TErrCode status = FILE_FAIL_IF(!IsOpen(), kFileNotOpen);
  RETURN_IF_FAILED(status);
  status = FILE_FAIL_IF(bytes == nullptr, CoreErrorCodes::kInvalidParam);
  RETURN_IF_FAILED(status);
  errno = 0;
  if (std::fwrite(bytes, 1, count, mpFile) == count) return CoreErrorCodes::kSuccess;
  return errno == ENOSPC ? FILE_CHECK(GFileSystem::kDirectoryFull) : FILE_CHECK(CoreErrorCodes::kError);
}

TErrCode GFile::Write(const std::string& text) {
  return Write(text.data(), text.size());
}

TErrCode GFile::Write(TUInt16 number) {
  return Write(reinterpret_cast<const char*>(&number), sizeof number);
}

TErrCode GFile::Write(TUInt32 number) {
  return Write(reinterpret_cast<const char*>(&number), sizeof number);
}

TErrCode GFile::Flush() {
  const TErrCode status = FILE_FAIL_IF(!IsOpen(), kFileNotOpen);
  RETURN_IF_FAILED(status);
  return FILE_FAIL_IF(std::fflush(mpFile) != 0, CoreErrorCodes::kError);
}

TErrCode GFile::OpenResourceFork(const GFileSystemSpec&, unsigned int) {
  return FILE_CHECK(GFileSystem::kFileNotFound);
}

std::string GFile::GetModeString(unsigned int mode) {
  const bool truncates = (mode & eTruncate) != 0;
  switch (mode & (eRead | eWrite)) {
    case eRead:
      return OSGetModeString("r");
    case eWrite:
      return OSGetModeString(truncates ? "w" : "a");
    case eRead | eWrite:
      if (truncates) return OSGetModeString("w+");
      return OSGetModeString((mode & eAppend) != 0 ? "a+" : "r+");
    default:
      return "";
  }
}
