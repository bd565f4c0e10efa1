#pragma once

#include <boost/asio/io_context.hpp>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "kiln/fonts/FolderWatch.h"
#include "kiln/fonts/SystemFontScan.h"
#include "kiln/store/LibraryWriter.h"

namespace kiln {

class BoundedLog;
class Database;
class FontReaderPool;

/// Keeps the System workgroup equal to the fonts that fontconfig shows without Kiln.
///
/// A look costs a child some tens of milliseconds, since fontconfig caches what it knows; only files that are
/// new or have changed are then read for what fontconfig doesn't keep (version text, checksums). Folders are
/// watched (inotify), so that a font that is installed while Kiln runs is known some moments later.
class SystemFonts {
 public:
  SystemFonts(boost::asio::io_context& context, Database& database, LibraryWriter& writer,
              FontReaderPool& readers, std::string readerProgram, std::string linkFolder, BoundedLog& log);

  /// Looks now. A call during a look has another one follow it.
  void Refresh();
  bool IsReady() const { return mReady; }
  /// Called once after the first look, whatever came of it.
  void WhenReady(std::function<void()> ready);

 private:
  void Take(const SystemFontScan::Listing* listing);
  bool Store(const SystemFontScan::Listing& listing);
  void Describe(const std::string& path, int64_t fileID);
  void TakeDescription(int64_t fileID, const wire::ReadFile& file);
  void Watch(const std::vector<std::string>& folders);

  boost::asio::io_context& mContext;
  Database& mDatabase;
  LibraryWriter& mWriter;
  FontReaderPool& mReaders;
  const std::string mReaderProgram;
  const std::string mLinkFolder;
  BoundedLog& mLog;
  bool mLooking = false;
  bool mLookAgain = false;
  bool mReady = false;
  std::vector<std::function<void()>> mWaiting;
  FolderWatch mWatch;
  std::shared_ptr<bool> mAlive = std::make_shared<bool>(true);
};

}  // namespace kiln
