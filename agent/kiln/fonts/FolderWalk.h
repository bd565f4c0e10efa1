#pragma once

#include <boost/asio/io_context.hpp>
#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "kiln/store/FolderFileStore.h"

namespace kiln {

/// One look for the font files in a folder and below it. Links aren't followed. It takes short slices of the
/// loop's time, so that a large folder, or a slow one, doesn't keep the clients waiting.
class FolderWalk : public std::enable_shared_from_this<FolderWalk> {
 public:
  struct Found {
    bool readable = false;  ///< the folder itself
    std::map<std::string, FolderFileStore::File> files;
    std::vector<std::string> unreadable;  ///< folders below it: what is in them isn't known
  };
  using Done = std::function<void(Found&)>;

  /// \param onFolder  Called before each folder is read.
  /// \param done  Called once, not from within this call.
  static void Start(boost::asio::io_context& context, const std::string& folder,
                    std::function<void(const std::string&)> onFolder, Done done);

  FolderWalk(boost::asio::io_context& context, std::function<void(const std::string&)> onFolder, Done done);

 private:
  void Continue();
  void Slice();
  bool Step();
  void Open();
  void Take(const std::filesystem::directory_entry& entry);

  boost::asio::io_context& mContext;
  const std::function<void(const std::string&)> mOnFolder;
  const Done mDone;
  std::vector<std::pair<std::string, int>> mFolders;  // to be read, with their depth
  std::string mFolder;                                // being read
  int mDepth = 0;
  std::filesystem::directory_iterator mEntry;
  Found mFound;
};

}  // namespace kiln
