#include "idml/PackageWriter.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <zip.h>

#include <array>
#include <cerrno>
#include <cstdlib>
#include <exception>
#include <memory>
#include <system_error>

#include "idml/Limits.h"
#include "idml/PackageNames.h"

namespace idml {
namespace {

std::string TextOfErrno() {
  return std::generic_category().message(errno);
}

bool IsStoredName(const std::string& name) {
  constexpr char kAllowed[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789.-_";
  return !name.empty() && name.size() <= 128 && name.find_first_not_of(kAllowed) == std::string::npos;
}

class Descriptor {
 public:
  explicit Descriptor(int descriptor) : m_nDescriptor(descriptor) {}
  ~Descriptor() {
    if (m_nDescriptor >= 0) close(m_nDescriptor);
  }
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;
  int get() const { return m_nDescriptor; }

 private:
  int m_nDescriptor;
};

/// A file beside the one that it will replace; goes away unless it did.
class Replacement {
 public:
  explicit Replacement(const std::string& target)
      : m_sTarget(target), m_sPath(target + ".XXXXXX"), m_descriptor(mkostemp(m_sPath.data(), O_CLOEXEC)) {}
  ~Replacement() {
    if (m_descriptor.get() >= 0 && !m_bDone) unlink(m_sPath.c_str());
  }

  const std::string& Path() const { return m_sPath; }

  bool CopyFrom(int source) {
    if (m_descriptor.get() < 0) return false;
    std::array<char, 65536> buffer;
    for (;;) {
      const ssize_t count = read(source, buffer.data(), buffer.size());
      if (count <= 0) return count == 0;
      for (ssize_t written = 0; written < count;) {
        const ssize_t step =
            write(m_descriptor.get(), buffer.data() + written, static_cast<std::size_t>(count - written));
        if (step < 0) return false;
        written += step;
      }
    }
  }

  // By name, not by m_descriptor: completing the archive has put another file under this name.
  bool Finish(const struct stat& like) {
    const Descriptor completed(open(m_sPath.c_str(), O_RDWR | O_CLOEXEC));
    // The owner can only be kept where the user may give files away; the document is ours then or was shared.
    if (fchown(completed.get(), like.st_uid, like.st_gid) != 0 && errno != EPERM) return false;
    if (fchmod(completed.get(), like.st_mode & 07777) != 0 || fsync(completed.get()) != 0) return false;
    if (rename(m_sPath.c_str(), m_sTarget.c_str()) != 0) return false;
    m_bDone = true;
    const Descriptor folder(open(FolderOf(m_sTarget).c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    return folder.get() < 0 || fsync(folder.get()) == 0 || errno == EINVAL;
  }

 private:
  static std::string FolderOf(const std::string& path) { return path.substr(0, path.rfind('/') + 1); }

  std::string m_sTarget;
  std::string m_sPath;
  Descriptor m_descriptor;
  bool m_bDone = false;
};

struct Discarder {
  void operator()(zip_t* archive) const { zip_discard(archive); }
};

bool AddParts(const std::string& path, const std::map<std::string, std::string>& stored, std::string& error) {
  int code = 0;
  std::unique_ptr<zip_t, Discarder> archive(zip_open(path.c_str(), 0, &code));
  if (!archive) {
    error = code == ZIP_ER_NOZIP ? "not a zip archive" : "damaged zip archive";
    return false;
  }
  for (const auto& [name, bytes] : stored) {
    zip_source_t* source = zip_source_buffer(archive.get(), bytes.data(), bytes.size(), 0);
    const std::string part = kStoredPartPrefix + name;
    if (!source ||
        zip_file_add(archive.get(), part.c_str(), source, ZIP_FL_OVERWRITE | ZIP_FL_ENC_UTF_8) < 0) {
      zip_source_free(source);
      error = zip_strerror(archive.get());
      return false;
    }
  }
  if (zip_close(archive.get()) != 0) {
    error = zip_strerror(archive.get());
    return false;
  }
  static_cast<void>(archive.release());  // Closing has freed it.
  return true;
}

bool Store(const std::string& path, const std::map<std::string, std::string>& stored, std::string& error) {
  for (const auto& [name, bytes] : stored) {
    if (!IsStoredName(name) || bytes.size() > limits::kMaximumStoredSize) {
      error = "\"" + name + "\" can't be stored";
      return false;
    }
  }
  const std::unique_ptr<char, decltype(&std::free)> real(realpath(path.c_str(), nullptr), &std::free);
  const Descriptor original(real ? open(real.get(), O_RDONLY | O_CLOEXEC | O_NONBLOCK) : -1);
  struct stat info = {};
  if (original.get() < 0 || fstat(original.get(), &info) != 0) {
    error = TextOfErrno();
    return false;
  }
  if (!S_ISREG(info.st_mode)) {
    error = "is no regular file";
    return false;
  }
  Replacement replacement(real.get());
  if (!replacement.CopyFrom(original.get())) {
    error = TextOfErrno();
    return false;
  }
  if (!AddParts(replacement.Path(), stored, error)) return false;
  if (!replacement.Finish(info)) {
    error = TextOfErrno();
    return false;
  }
  return true;
}

}  // namespace

bool StoreInPackage(const std::string& path, const std::map<std::string, std::string>& stored,
                    std::string& error) {
  try {
    if (Store(path, stored, error)) return true;
  } catch (const std::exception& failure) {
    error = failure.what();
  }
  error = path + ": " + error;
  return false;
}

}  // namespace idml
