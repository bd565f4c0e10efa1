#include "kiln/activation/LinkFolder.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cctype>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <system_error>

#include "kiln/system/KilnPaths.h"
#include "protocol/ErrorCodes.h"

namespace kiln {
namespace {

constexpr size_t kLongestName = 200;  // bytes; file systems take 255

std::string BucketName(int bucket) {
  char name[16];
  std::snprintf(name, sizeof name, "%03d", bucket);
  return name;
}

bool IsBucketName(const std::string& name) {
  if (name.size() < 3) return false;
  for (const char c : name) {
    if (!std::isdigit(static_cast<unsigned char>(c))) return false;
  }
  return true;
}

// A name that is a file name, and that fontconfig doesn't pass over for a leading dot. The end, with the
// extension, stays.
std::string SafeName(std::string name) {
  for (char& c : name) {
    if (c == '/' || static_cast<unsigned char>(c) < 0x20) c = '_';
  }
  if (name.size() > kLongestName) name = name.substr(name.size() - kLongestName);
  while (!name.empty() && (static_cast<unsigned char>(name.front()) & 0xC0) == 0x80) name.erase(0, 1);
  if (name.empty() || name.front() == '.') name.insert(0, "font");
  return name;
}

uint32_t CodeOf(int error) {
  if (error == ENOENT) return codes::kFontMissing;
  return error == ENOSPC || error == EDQUOT ? codes::kDiskFull : codes::kFileSystemError;
}

// Copies under a name that fontconfig doesn't see, so that no program meets half a font.
int CopyInto(const std::string& from, const std::string& to) {
  const size_t slash = to.rfind('/');
  const std::string unfinished = to.substr(0, slash + 1) + ".new-" + to.substr(slash + 1);
  std::error_code error;
  std::filesystem::copy_file(from, unfinished, std::filesystem::copy_options::overwrite_existing, error);
  if (!error) std::filesystem::rename(unfinished, to, error);
  if (!error) return 0;
  unlink(unfinished.c_str());
  return error.value();
}

int LinkOrCopy(const std::string& from, const std::string& to) {
  if (link(from.c_str(), to.c_str()) == 0) return 0;
  const bool cannotLink = errno == EXDEV || errno == EPERM || errno == EMLINK || errno == EOPNOTSUPP;
  return cannotLink ? CopyInto(from, to) : errno;
}

// Into the vault. Its own folder isn't made anew: someone who has moved it away will want to move it back.
int PutBack(const std::string& link, const std::string& path) {
  mkdir(path.substr(0, path.rfind('/')).c_str(), 0700);
  const int error = LinkOrCopy(link, path);
  return error == EEXIST ? 0 : error;
}

// Links keep the content alive elsewhere; a file with one name may be all there is of it.
bool IsSafeToRemove(const std::filesystem::path& path, bool folderHoldsCopies) {
  struct stat found {};
  if (lstat(path.c_str(), &found) != 0) return false;
  if (S_ISLNK(found.st_mode)) return true;
  return S_ISREG(found.st_mode) && (folderHoldsCopies || found.st_nlink > 1);
}

bool AreOnOneFileSystem(const std::string& one, const std::string& other) {
  struct stat first {};
  struct stat second {};
  return stat(one.c_str(), &first) == 0 && stat(other.c_str(), &second) == 0 && first.st_dev == second.st_dev;
}

// The same file as the one in the vault, or, where links can't be, one that looks like its copy.
bool IsInPlace(const std::string& link, const LinkFolder::Expected& expected) {
  struct stat there {};
  struct stat vault {};
  if (lstat(link.c_str(), &there) != 0 || !S_ISREG(there.st_mode)) return false;
  if (stat(expected.path.c_str(), &vault) != 0) return static_cast<uint64_t>(there.st_size) == expected.size;
  if (there.st_dev == vault.st_dev && there.st_ino == vault.st_ino) return true;
  return there.st_size == vault.st_size;
}

std::vector<std::filesystem::path> Children(const std::filesystem::path& folder) {
  std::vector<std::filesystem::path> children;
  std::error_code error;
  for (std::filesystem::directory_iterator entry(folder, error), end; !error && entry != end;
       entry.increment(error)) {
    children.push_back(entry->path());
  }
  return children;
}

}  // namespace

// One with room that hasn't the name, else the first number that isn't in use.
int LinkFolder::FindBucket(const std::string& name) const {
  for (const int bucket : mWithRoom) {
    if (mBuckets.at(bucket).count(name) == 0) return bucket;
  }
  const auto count = static_cast<int>(mBuckets.size());
  if (count == 0 || mBuckets.rbegin()->first == count - 1) return count;
  int bucket = 0;
  for (const auto& [number, names] : mBuckets) {
    if (number != bucket) break;
    ++bucket;
  }
  return bucket;
}

void LinkFolder::Note(int bucket, const std::string& name) {
  std::set<std::string>& names = mBuckets[bucket];
  names.insert(name);
  if (names.size() < kBucketSize) {
    mWithRoom.insert(bucket);
  } else {
    mWithRoom.erase(bucket);
  }
}

uint32_t LinkFolder::Add(const std::string& path, const std::string& wantedName, std::string& link) {
  const std::string name = SafeName(wantedName);
  for (;;) {
    const int bucket = FindBucket(name);
    const std::string folder = mFolder + "/" + BucketName(bucket);
    const std::string place = BucketName(bucket) + "/" + name;
    int error = mBuckets.count(bucket) > 0 ? LinkOrCopy(path, PathOf(place)) : ENOENT;
    if (error == ENOENT) {
      // The folder may be what isn't there.
      if (const int folderError = MakeFolders(folder))
        return CodeOf(folderError == ENOENT ? EIO : folderError);
      error = LinkOrCopy(path, PathOf(place));
    }
    if (error != 0 && error != EEXIST) {
      rmdir(folder.c_str());
      return CodeOf(error);
    }
    Note(bucket, name);
    link = place;
    if (error == 0) return codes::kSuccess;
    // Someone else's file has the name: it is noted as taken, and the next bucket is tried.
  }
}

// True when nothing of its bucket is left.
bool LinkFolder::Forget(const std::string& place) {
  const size_t slash = place.find('/');
  const auto bucket = mBuckets.find(std::atoi(place.c_str()));
  if (slash == std::string::npos || bucket == mBuckets.end()) return false;
  bucket->second.erase(place.substr(slash + 1));
  mWithRoom.insert(bucket->first);
  if (!bucket->second.empty()) return false;
  mWithRoom.erase(bucket->first);
  mBuckets.erase(bucket);
  return true;
}

void LinkFolder::Remove(const std::string& place, const std::string& path) {
  const std::string link = PathOf(place);
  if (access(path.c_str(), F_OK) == 0 || PutBack(link, path) == 0) unlink(link.c_str());
  if (Forget(place)) rmdir(link.substr(0, link.rfind('/')).c_str());
}

bool LinkFolder::Restore(const std::string& place, const std::string& path, uint64_t size) {
  struct stat found {};
  const std::string link = PathOf(place);
  if (lstat(link.c_str(), &found) != 0 || !S_ISREG(found.st_mode)) return false;
  if (static_cast<uint64_t>(found.st_size) != size) return false;
  if (stat(path.c_str(), &found) == 0 && static_cast<uint64_t>(found.st_size) != size) unlink(path.c_str());
  return PutBack(link, path) == 0;
}

void LinkFolder::Renew(const std::string& place, const std::string& path, uint64_t size) {
  const std::string link = PathOf(place);
  if (IsInPlace(link, {path, place, size})) return;
  if (MakeFolders(link.substr(0, link.rfind('/'))) != 0) return;
  unlink(link.c_str());
  LinkOrCopy(path, link);
}

bool LinkFolder::Holds(const std::string& place) const {
  struct stat found {};
  return lstat(PathOf(place).c_str(), &found) == 0;
}

std::vector<std::string> LinkFolder::Reconcile(const std::vector<Expected>& expected) {
  mBuckets.clear();
  mWithRoom.clear();
  std::vector<std::string> lost;
  for (const Expected& file : expected) {
    const std::string path = mFolder + "/" + file.link;
    bool there = IsInPlace(path, file);
    if (!there) {
      const bool folderMade = MakeFolders(path.substr(0, path.rfind('/'))) == 0;
      if (access(file.path.c_str(), R_OK) == 0) unlink(path.c_str());
      there = folderMade && LinkOrCopy(file.path, path) == 0;
    }
    if (!there) {
      lost.push_back(file.link);
      continue;
    }
    Note(std::atoi(file.link.c_str()), file.link.substr(file.link.find('/') + 1));
  }
  const bool holdsCopies = !AreOnOneFileSystem(mFolder, mVault);
  for (const std::filesystem::path& bucket : Children(mFolder)) {
    if (!IsBucketName(bucket.filename())) continue;
    const auto known = mBuckets.find(std::atoi(bucket.filename().c_str()));
    for (const std::filesystem::path& file : Children(bucket)) {
      const bool wanted = known != mBuckets.end() && known->second.count(file.filename()) > 0;
      if (!wanted && IsSafeToRemove(file, holdsCopies)) unlink(file.c_str());
    }
    rmdir(bucket.c_str());
  }
  return lost;
}

}  // namespace kiln
