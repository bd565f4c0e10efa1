#include "Parsers/FStreamWrapper.h"

#include <algorithm>
#include <array>

#include "Memory/CFVector.h"
#include "Utilities/DebugUtils.h"

FStreamWrapper::FStreamWrapper() : std::iostream(this) {}

void FStreamWrapper::close() {
  if (!Close()) setstate(std::ios_base::failbit);
}

void FStreamWrapper::open(const char* path, unsigned mode) {
  if (Open(path, static_cast<std::ios_base::openmode>(mode))) {
    clear();
  } else {
    setstate(std::ios_base::failbit);
  }
}

long long FStreamWrapper::GetStreamLength() {
  const std::streampos position = tellg();
  seekg(0, std::ios_base::end);
  const long long length = tellg();
  seekg(position);
  return length;
}

bool FStreamWrapper::LengthenFileStream(long long newLength) {
  const std::streampos position = tellp();
  seekp(0, std::ios_base::end);
  long long missing = newLength - static_cast<long long>(tellp());
  static constexpr std::array<char, 65536> kZeros{};
  while (missing > 0 && good()) {
    const long long piece = std::min<long long>(missing, kZeros.size());
    write(kZeros.data(), piece);
    missing -= piece;
  }
  seekp(position);
  return true;
}

int ReadStream(FStreamWrapper& stream, unsigned long* count, void* buffer) {
  stream.read(static_cast<char*>(buffer), static_cast<std::streamsize>(*count));
  if (stream.good()) return 0;
  if (stream.eof()) stream.clear();
  return -1;
}

int WriteStream(FStreamWrapper& stream, unsigned long* count, const void* buffer) {
  const long long before = stream.tellp();
  stream.write(static_cast<const char*>(buffer), static_cast<std::streamsize>(*count));
  const long long after = stream.tellp();
  return after - before < static_cast<long long>(*count) ? -1 : 0;
}

bool OpenFileStreamFromCFURLRef(CFURLRef url, CFStringRef path, FStreamWrapper* stream, bool readOnly) {
  const unsigned mode = static_cast<unsigned>(std::ios_base::in | std::ios_base::binary |
                                              (readOnly ? std::ios_base::openmode{} : std::ios_base::out));
  std::array<char, 1024> name{};
  const auto takePath = [&](CFStringEncoding encoding) {
    if (path == nullptr || !CFStringGetCString(path, name.data(), name.size(), encoding)) name.fill(0);
  };
  if (url == nullptr ||
      !CFURLGetFileSystemRepresentation(url, true, reinterpret_cast<UInt8*>(name.data()), name.size())) {
    OutputIndentedAndFormattedString(0, "ERROR: CFURLGetFileSystemRepresentation('%s') failed.",
                                     ToStdString(path).c_str());
    takePath(kCFStringEncodingUTF8);
    OutputIndentedAndFormattedString(0, "Trying again with kCFStringEncodingUTF8: '%s'", name.data());
  }
  if (name[0] != 0) stream->open(name.data(), mode);
  if (!stream->is_open()) {
    OutputIndentedAndFormattedString(0, "WARNING: std::fstream::open('%s') failed.", name.data());
    const CFStringEncoding encoding = CFStringGetSystemEncoding();
    takePath(encoding);
    OutputIndentedAndFormattedString(0, "Trying again with default system encoding (0x%08x): '%s'", encoding,
                                     name.data());
    if (name[0] != 0) stream->open(name.data(), mode);
  }
  return stream->is_open();
}
