#pragma once

#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace kiln {

/// The folder below the user's font folder in which active files lie for every program to see.
///
/// Files lie in buckets, `<folder>/000/`, `<folder>/001/` and so on, of at most kBucketSize: fontconfig reads
/// a folder that has changed whole, so that one flat folder would make each activation as dear as all of
/// them. A file is a hard link to the one in the vault, which sandboxed programs can follow, or a copy where
/// the folder lies on another file system. It has the name that it had when it was added to the library;
/// where a bucket has that name already, another bucket takes it.
///
/// Thread: one. The folder is Kiln's own; nothing else should write there.
class LinkFolder {
 public:
  static constexpr size_t kBucketSize = 50;

  /// \param vault  Where the files come from: on another file system, this folder holds copies.
  LinkFolder(std::string folder, std::string vault) : mFolder(std::move(folder)), mVault(std::move(vault)) {}

  /// Makes a file visible.
  /// \param name  The wanted file name.
  /// \param link  Receives the place, relative to the folder.
  /// \return 0; kFontMissing when `path` has gone; kDiskFull; kFileSystemError.
  uint32_t Add(const std::string& path, const std::string& name, std::string& link);

  /// Takes a file away, and its bucket with the last one. One that isn't there is as good.
  /// \param path  The file in the vault. Where that has gone, it is put back from here first.
  void Remove(const std::string& link, const std::string& path);

  /// Puts a file whose copy in the vault has gone, or has another size, back to `path` from here. The vault's
  /// folder must be there.
  /// \param size  The file's; another one here isn't it.
  /// \return False when it isn't here either, or couldn't be put back.
  bool Restore(const std::string& link, const std::string& path, uint64_t size);

  /// Makes a place hold the file again, if it doesn't: the file in the vault is sound. What can't be is left.
  void Renew(const std::string& link, const std::string& path, uint64_t size);

  /// Whether a place still holds a file.
  bool Holds(const std::string& link) const;

  /// The whole path of a place.
  std::string PathOf(const std::string& link) const { return mFolder + "/" + link; }

  struct Expected {
    std::string path;  ///< the file in the vault
    std::string link;
    uint64_t size = 0;
  };
  /// Makes the folder hold exactly `expected`, as far as that can be: restores what has gone and removes what
  /// is left over from an earlier run. A file that may be the only copy of something stays: one that isn't
  /// linked to another, unless copies are what this folder holds. To be called before Add() and Remove().
  ///
  /// \return The expected links that couldn't be restored.
  std::vector<std::string> Reconcile(const std::vector<Expected>& expected);

 private:
  int FindBucket(const std::string& name) const;
  void Note(int bucket, const std::string& name);
  bool Forget(const std::string& link);

  const std::string mFolder;
  const std::string mVault;
  std::map<int, std::set<std::string>> mBuckets;  // names in use, by bucket
  std::set<int> mWithRoom;                        // those of them that aren't full
};

}  // namespace kiln
