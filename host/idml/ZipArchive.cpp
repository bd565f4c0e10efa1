#include "idml/ZipArchive.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <zip.h>

#include <cstring>
#include <system_error>

#include "idml/Limits.h"

namespace idml {
namespace {

struct FileCloser {
  void operator()(zip_file_t* file) const { zip_fclose(file); }
};
using ZipFile = std::unique_ptr<zip_file_t, FileCloser>;

std::string TextOfZipError(int code) {
  zip_error_t error;
  zip_error_init_with_code(&error, code);
  std::string text = zip_error_strerror(&error);
  zip_error_fini(&error);
  return text;
}

std::string TextOfErrno(int code) {
  return std::generic_category().message(code);
}

// The limits, as far as the directory tells: a message, or nothing when the part may be read.
std::string CheckSize(const zip_stat_t& entry, std::uint64_t totalRead) {
  if (entry.size > limits::kMaximumPartSize) {
    return "unpacks to " + std::to_string(entry.size) + " bytes, more than is read of one part";
  }
  if (entry.size > limits::kRatioFreeSize && entry.size / limits::kMaximumRatio > entry.comp_size) {
    return "unpacks to " + std::to_string(entry.size) + " bytes from " + std::to_string(entry.comp_size) +
           ", as no document does";
  }
  if (totalRead + entry.size > limits::kMaximumTotalSize) return "the package unpacks to too many bytes";
  return {};
}

}  // namespace

std::unique_ptr<ZipArchive> ZipArchive::Open(const std::string& path, std::string& error) {
  // Not by name: a pipe would block, and the file that was checked must be the one that is read.
  const int descriptor = open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
  if (descriptor < 0) {
    error = TextOfErrno(errno);
    return nullptr;
  }
  struct stat info = {};
  if (fstat(descriptor, &info) != 0 || !S_ISREG(info.st_mode)) {
    error = S_ISDIR(info.st_mode) ? "is a folder, not a document" : "is no regular file";
    close(descriptor);
    return nullptr;
  }
  int code = 0;
  zip_t* archive = zip_fdopen(descriptor, 0, &code);
  if (!archive) {
    close(descriptor);  // zip_fdopen takes the descriptor only when it succeeds.
    error = code == ZIP_ER_NOZIP ? "not a zip archive" : "damaged zip archive: " + TextOfZipError(code);
    return nullptr;
  }
  std::unique_ptr<ZipArchive> opened(new ZipArchive(archive));
  const zip_int64_t entries = zip_get_num_entries(archive, 0);
  if (entries < 0 || static_cast<std::uint64_t>(entries) > limits::kMaximumEntries) {
    error = "has " + std::to_string(entries) + " entries, more than a document has";
    return nullptr;
  }
  return opened;
}

ZipArchive::~ZipArchive() {
  zip_discard(m_pArchive);
}

bool ZipArchive::Contains(const std::string& name) const {
  return zip_name_locate(m_pArchive, name.c_str(), 0) >= 0;
}

std::vector<std::string> ZipArchive::NamesWithPrefix(const std::string& prefix) const {
  std::vector<std::string> names;
  const zip_int64_t entries = zip_get_num_entries(m_pArchive, 0);
  for (zip_int64_t index = 0; index < entries; ++index) {
    const char* name = zip_get_name(m_pArchive, static_cast<zip_uint64_t>(index), 0);
    if (name && std::strncmp(name, prefix.c_str(), prefix.size()) == 0) names.emplace_back(name);
  }
  return names;
}

std::optional<std::string> ZipArchive::Read(const std::string& name, std::string& error) {
  const zip_int64_t index = zip_name_locate(m_pArchive, name.c_str(), 0);
  if (index < 0) {
    error = "missing part " + name;
    return std::nullopt;
  }
  const auto entryIndex = static_cast<zip_uint64_t>(index);
  zip_stat_t entry;
  constexpr zip_uint64_t kNeeded = ZIP_STAT_SIZE | ZIP_STAT_COMP_SIZE;
  if (zip_stat_index(m_pArchive, entryIndex, 0, &entry) != 0 || (entry.valid & kNeeded) != kNeeded) {
    error = name + ": damaged entry";
    return std::nullopt;
  }
  if (const std::string refusal = CheckSize(entry, m_nTotalRead); !refusal.empty()) {
    error = name + ": " + refusal;
    return std::nullopt;
  }
  ZipFile file(zip_fopen_index(m_pArchive, entryIndex, 0));
  if (!file) {
    error = name + ": " + zip_strerror(m_pArchive);
    return std::nullopt;
  }
  // One byte more than announced: the end must come where the directory says, and only a read up to the end
  // compares the checksum.
  std::string bytes(static_cast<std::size_t>(entry.size) + 1, '\0');
  std::size_t filled = 0;
  for (;;) {
    const zip_int64_t count = zip_fread(file.get(), bytes.data() + filled, bytes.size() - filled);
    if (count < 0) {
      error = name + ": " + zip_file_strerror(file.get());
      return std::nullopt;
    }
    filled += static_cast<std::size_t>(count);
    if (count == 0 || filled == bytes.size()) break;
  }
  if (filled != entry.size) {
    error = name + ": unpacks to another size than announced";
    return std::nullopt;
  }
  bytes.resize(filled);
  m_nTotalRead += filled;
  return bytes;
}

}  // namespace idml
