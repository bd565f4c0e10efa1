#pragma once

#include <array>
#include <boost/asio/io_context.hpp>
#include <boost/asio/steady_timer.hpp>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>

#include "kiln/activation/ActivationChange.h"
#include "kiln/fonts/FolderWatch.h"

namespace kiln {

class BoundedLog;
struct FontLibrary;
struct KilnPaths;

/// Notices when files of the vault go, come back and are written to: by a watch of its folders, and by
/// looking at all of them. What is made of it, VaultCheck tells.
///
/// A look takes the vault folder by folder, so that clients aren't kept waiting; one that follows a change
/// passes over the folders in which nothing has come or gone since they were last looked at. Kiln itself
/// never writes to a file that is in its place, so that a look behind such a writing is rare, and looks at
/// all.
class VaultWatch {
 public:
  using Announce = std::function<void(const ActivationChange&)>;
  /// Files of the vault that are through, of all.
  using Progress = std::function<void(uint32_t done, uint32_t total)>;
  /// \param error  0 or the database's, and then the rest wasn't looked at.
  using Done = std::function<void(uint32_t error, uint32_t checked)>;

  /// \param announce  Called behind each look that changed something.
  VaultWatch(boost::asio::io_context& context, FontLibrary& library, const KilnPaths& paths, BoundedLog& log,
             Announce announce);

  /// Begins to watch, and looks at all files a moment later: the client that has started Kiln is served
  /// first, and is there to hear what is found.
  void Start();

  /// Looks at all files.
  /// \param progress  Called for each folder. May be null.
  /// \param done  Called once, not from within this call, unless the watch goes before; what it finds is
  ///              announced behind it.
  void Check(Progress progress, Done done);

 private:
  // Folders of the vault are numbered by their two digits.
  static constexpr int kFolders = 256;
  struct Look {
    bool everything = true;
    int next = 0;
    uint32_t checked = 0;
    uint32_t total = 0;
    ActivationChange change;
    Progress progress;
    Done done;
  };

  void Begin(Look look);
  void Continue(const std::shared_ptr<Look>& look);
  void End(Look& look, uint32_t error);
  uint32_t LookAtFolder(int number, Look& look);
  void WatchFolders();
  void OnChange();
  std::string PathOf(int number) const;

  boost::asio::io_context& mContext;
  FontLibrary& mLibrary;
  const KilnPaths& mPaths;
  BoundedLog& mLog;
  const Announce mAnnounce;
  FolderWatch mWatch;
  FolderWatch mWrites;
  boost::asio::steady_timer mFirstLook;
  std::array<int64_t, kFolders>
      mLookedAt{};  // time of change of the folder that the last look saw, 0 for none
  std::shared_ptr<bool> mAlive = std::make_shared<bool>(true);
};

}  // namespace kiln
