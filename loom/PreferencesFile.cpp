#include "PreferencesFile.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <utility>

#include "GDateTime.h"
#include "GStringUtils.h"
#include "Memory/CFVector.h"
#include "System/Clock.h"

namespace {

// Far above any honest file; a larger one is damage.
constexpr off_t kMaxFileSize = 4 << 20;
constexpr auto kLockRetryInterval = std::chrono::milliseconds(20);
constexpr int kMaxLockTries = 100;

class Descriptor {
 public:
  explicit Descriptor(int descriptor) : m_descriptor(descriptor) {}
  ~Descriptor() { Close(); }
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;

  int get() const { return m_descriptor; }
  explicit operator bool() const { return m_descriptor >= 0; }
  bool Close() { return m_descriptor < 0 || close(std::exchange(m_descriptor, -1)) == 0; }

 private:
  int m_descriptor;
};

bool WriteAll(int descriptor, const UInt8* bytes, std::size_t count) {
  while (count > 0) {
    const ssize_t written = write(descriptor, bytes, count);
    if (written < 0 && errno == EINTR) continue;
    if (written <= 0) return false;
    bytes += written;
    count -= static_cast<std::size_t>(written);
  }
  return true;
}

// False with errno set, or 0 for a file that is cut short meanwhile.
bool ReadAll(int descriptor, std::string& bytes) {
  for (std::size_t offset = 0; offset < bytes.size();) {
    const ssize_t count = read(descriptor, bytes.data() + offset, bytes.size() - offset);
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) return false;
    if (count == 0) {
      bytes.resize(offset);
      break;
    }
    offset += static_cast<std::size_t>(count);
  }
  return true;
}

// Waits for whoever changes the file right now; a process that was stopped in that moment isn't waited for.
bool Lock(int descriptor) {
  for (int i = 0; i < kMaxLockTries; ++i) {
    if (flock(descriptor, LOCK_EX | LOCK_NB) == 0) return true;
    if (errno != EWOULDBLOCK && errno != EINTR) return false;
    platform::Clock::Get().Sleep(kLockRetryInterval);
  }
  return false;
}

std::string FolderOf(const std::string& path) {
  return std::filesystem::path(path).parent_path().string();
}

// A file that is a link, as tools for home folders make them, is replaced where it really lies.
std::string RealPath(const std::string& path) {
  char* const resolved = realpath(path.c_str(), nullptr);
  std::string result = resolved != nullptr ? resolved : path;
  std::free(resolved);
  return result;
}

// "2020-01-02T03:04:05.000Z" without its punctuation.
std::string TimeForFileName() {
  std::string text = GDateTime().GetAsISO8601String(true);
  std::erase_if(text, [](char character) { return character == '-' || character == ':'; });
  return text.substr(0, text.find('.')) + "Z";
}

}  // namespace

struct PreferencesFile::Contents {
  enum class State { kMissing, kGood, kDamaged, kUnreadable };
  State state = State::kMissing;
  RetainPtr<CFDictionaryRef> values;
  std::string reason;
  int error = 0;
};

bool PreferencesFile::Stamp::operator==(const Stamp& other) const {
  return exists == other.exists && device == other.device && inode == other.inode && size == other.size &&
         changed.tv_sec == other.changed.tv_sec && changed.tv_nsec == other.changed.tv_nsec;
}

PreferencesFile::PreferencesFile(std::string path, Reporter report)
    : m_path(std::move(path)), m_report(std::move(report)) {}

PreferencesFile::Stamp PreferencesFile::GetStamp() const {
  struct stat status {};
  if (stat(m_path.c_str(), &status) != 0) return {};
  return {true, status.st_dev, status.st_ino, status.st_size, status.st_mtim};
}

PreferencesFile::Contents PreferencesFile::Load() const {
  using State = Contents::State;
  const Descriptor file(open(m_path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
  if (!file) {
    const int error = errno;
    return {error == ENOENT ? State::kMissing : State::kUnreadable, nullptr, "", error};
  }
  struct stat status {};
  if (fstat(file.get(), &status) != 0) return {State::kUnreadable, nullptr, "", errno};
  if (!S_ISREG(status.st_mode)) return {State::kUnreadable, nullptr, "", EINVAL};
  if (status.st_size > kMaxFileSize) return {State::kDamaged, nullptr, "the file is too large", 0};
  std::string bytes(static_cast<std::size_t>(status.st_size), '\0');
  if (!ReadAll(file.get(), bytes)) return {State::kUnreadable, nullptr, "", errno};

  CFErrorRef error = nullptr;
  const RetainPtr<CFTypeRef> list = adoptCF(CFPropertyListCreateWithData(
      kCFAllocatorDefault, ToCFData(bytes).get(), kCFPropertyListImmutable, nullptr, &error));
  const RetainPtr<CFErrorRef> heldError = adoptCF(error);
  if (const auto values = dynamicCF<CFDictionaryRef>(list.get())) {
    return {State::kGood, retainCF(values), "", 0};
  }
  if (!heldError) return {State::kDamaged, nullptr, "it holds no dictionary", 0};
  const RetainPtr<CFStringRef> description = adoptCF(CFErrorCopyDescription(heldError.get()));
  return {State::kDamaged, nullptr, ToStdString(description.get()), 0};
}

RetainPtr<CFDictionaryRef> PreferencesFile::Read() {
  Contents contents = Load();
  if (contents.state == Contents::State::kUnreadable) {
    Fail("can't be read", contents.error);
  } else if (contents.state == Contents::State::kDamaged) {
    // Another process may have moved it aside, or be about to: look again under the lock.
    const Descriptor lock(open((m_path + ".lock").c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600));
    if (lock && Lock(lock.get())) contents = Load();
    if (contents.state == Contents::State::kDamaged) MoveAside(contents.reason);
  }
  return contents.values ? contents.values : RetainPtr<CFDictionaryRef>(MakeDictionary());
}

bool PreferencesFile::Change(CFStringRef key, CFTypeRef value) {
  std::error_code error;
  std::filesystem::create_directories(FolderOf(m_path), error);
  const Descriptor lock(open((m_path + ".lock").c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600));
  if (!lock) return Fail("can't be changed", errno);
  if (!Lock(lock.get())) return Fail("are being changed by another program", 0);

  const Contents contents = Load();
  if (contents.state == Contents::State::kUnreadable) return Fail("can't be read", contents.error);
  if (contents.state == Contents::State::kDamaged && !MoveAside(contents.reason)) return false;
  const RetainPtr<CFMutableDictionaryRef> values =
      contents.values ? adoptCF(CFDictionaryCreateMutableCopy(kCFAllocatorDefault, 0, contents.values.get()))
                      : MakeDictionary();
  if (value != nullptr) {
    CFDictionarySetValue(values.get(), key, value);
  } else {
    CFDictionaryRemoveValue(values.get(), key);
  }
  return Store(values.get());
}

bool PreferencesFile::MoveAside(const std::string& reason) {
  const std::filesystem::path path(m_path);
  const std::string base = (path.parent_path() / path.stem()).string() + ".damaged-" + TimeForFileName();
  std::string aside = base + path.extension().string();
  for (int i = 2; std::filesystem::exists(aside); ++i) {
    aside = base + "-" + std::to_string(i) + path.extension().string();
  }
  if (std::rename(m_path.c_str(), aside.c_str()) != 0) {
    const int error = errno;
    return error == ENOENT || Fail("are damaged (" + reason + ") and can't be moved aside", error);
  }
  m_report("The preferences in '" + m_path + "' are damaged (" + reason + "). They are kept as '" + aside +
           "', and the defaults apply.");
  return true;
}

bool PreferencesFile::Store(CFDictionaryRef values) {
  CFErrorRef error = nullptr;
  const RetainPtr<CFDataRef> data = adoptCF(
      CFPropertyListCreateData(kCFAllocatorDefault, values, kCFPropertyListXMLFormat_v1_0, 0, &error));
  const RetainPtr<CFErrorRef> heldError = adoptCF(error);
  if (!data) return Fail("can't be written as a property list", 0);

  const std::string path = RealPath(m_path);
  std::string temporary = path + ".XXXXXX";
  Descriptor file(mkostemp(temporary.data(), O_CLOEXEC));
  if (!file) return Fail("can't be changed", errno);
  const bool isWritten = WriteAll(file.get(), CFDataGetBytePtr(data.get()),
                                  static_cast<std::size_t>(CFDataGetLength(data.get())));
  if (!isWritten || fsync(file.get()) != 0 || !file.Close() ||
      std::rename(temporary.c_str(), path.c_str()) != 0) {
    const int reason = errno;
    unlink(temporary.c_str());
    return Fail("can't be changed", reason);
  }
  // The new name itself must outlive a crash, too.
  const Descriptor folder(open(FolderOf(path).c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (folder) fsync(folder.get());
  return true;
}

bool PreferencesFile::Fail(const std::string& what, int error) {
  m_report("The preferences in '" + m_path + "' " + what + (error != 0 ? std::string(": ") : "") +
           (error != 0 ? std::strerror(error) : "") + ".");
  return false;
}
