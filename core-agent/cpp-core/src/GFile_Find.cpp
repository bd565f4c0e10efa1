#include <algorithm>
#include <cstring>

#include "GErrors.h"
#include "GFile.h"

namespace {

constexpr const char* kIdentifier = "FileSystem";

struct ScanResult {
  bool isFound;
  std::size_t index;  // of the match; otherwise of the first byte that the scan couldn't decide
};

// Looks for the search bytes in a buffer. A start so near the end that the search doesn't fit is left to the
// next buffer.
ScanResult Scan(const std::vector<char>& buffer, const std::vector<char>& searchBytes) {
  std::size_t i = 0;
  while (i < buffer.size()) {
    const void* candidate = std::memchr(buffer.data() + i, searchBytes[0], buffer.size() - i);
    if (candidate == nullptr) return {false, buffer.size()};
    i = static_cast<std::size_t>(static_cast<const char*>(candidate) - buffer.data());
    if (buffer.size() - i < searchBytes.size()) return {false, i};
    if (std::memcmp(candidate, searchBytes.data(), searchBytes.size()) == 0) return {true, i};
    ++i;
  }
  return {false, i};
}

}  // namespace

#define RETURN_IF_FAILED(status) \
  if ((status) != CoreErrorCodes::kSuccess) return status

TErrCode GFile::Find(const std::vector<char>& searchBytes, EPosition position, long offset) {
  TErrCode status =
      GREQUIRE(!searchBytes.empty(), TErrCode{CoreErrorCodes::kInvalidParam}, kIdentifier, GLogger::eError);
  RETURN_IF_FAILED(status);
  TUInt64 fileSize = 0;
  status = GCHECK(GetFileSize(fileSize), kIdentifier, GLogger::eError);
  RETURN_IF_FAILED(status);
  status = GFAIL_IF(searchBytes.size() > fileSize, TErrCode{CoreErrorCodes::kNotFound}, kIdentifier,
                    GLogger::eInfo);
  RETURN_IF_FAILED(status);
  TUInt64 oldFilePos = 0;
  TUInt64 startingFilePos = 0;
  status = GCHECK(GetFilePosition(oldFilePos), kIdentifier, GLogger::eError);
  RETURN_IF_FAILED(status);
  status = GCHECK(SetFilePosition(position, offset), kIdentifier, GLogger::eError);
  RETURN_IF_FAILED(status);
  status = GCHECK(GetFilePosition(startingFilePos), kIdentifier, GLogger::eError);
  RETURN_IF_FAILED(status);

  const TUInt64 bufferSize = std::max<TUInt64>(searchBytes.size(), std::min(mSearchBufferSize, fileSize));
  TUInt64 totalBytesRead = 0;
  std::vector<char> buffer;
  while (true) {
    status = GCHECK(Read(bufferSize, buffer), kIdentifier, GLogger::eError);
    if (status != CoreErrorCodes::kSuccess || buffer.empty()) break;
    totalBytesRead += buffer.size();
    const ScanResult scan = Scan(buffer, searchBytes);
    if (scan.isFound) {
      const TUInt64 foundOffset = startingFilePos + (totalBytesRead - buffer.size()) + scan.index;
      return GCHECK(SetFilePosition(eBeginning, static_cast<long>(foundOffset)), kIdentifier,
                    GLogger::eError);
    }
    // Only a start near the end of a full buffer, with room behind it in the file, is looked at again.
    const TUInt64 undecided = buffer.size() - scan.index;
    const TUInt64 undecidedOffset = startingFilePos + totalBytesRead - undecided;
    if (undecided == 0 || buffer.size() < bufferSize || undecidedOffset + searchBytes.size() > fileSize) {
      continue;
    }
    totalBytesRead -= undecided;
    status =
        GCHECK(SetFilePosition(eBeginning, static_cast<long>(undecidedOffset)), kIdentifier, GLogger::eError);
    if (status != CoreErrorCodes::kSuccess) break;
  }
  GCHECK(SetFilePosition(eBeginning, static_cast<long>(oldFilePos)), kIdentifier, GLogger::eError);
  RETURN_IF_FAILED(status);
  return GCHECK(CoreErrorCodes::kNotFound, kIdentifier, GLogger::eInfo);
}
