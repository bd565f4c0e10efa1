#include "kiln/fonts/SystemFonts.h"

#include <set>
#include <string_view>
#include <utility>

#include "kiln/fonts/FontReaderPool.h"
#include "kiln/store/Database.h"
#include "kiln/store/WorkgroupScope.h"
#include "kiln/system/BoundedLog.h"

namespace kiln {
namespace {

bool IsBelow(std::string_view path, std::string_view folder) {
  return path.starts_with(folder) && (path.size() == folder.size() || path[folder.size()] == '/');
}

}  // namespace

SystemFonts::SystemFonts(boost::asio::io_context& context, Database& database, LibraryWriter& writer,
                         FontReaderPool& readers, std::string readerProgram, std::string linkFolder,
                         BoundedLog& log)
    : mContext(context),
      mDatabase(database),
      mWriter(writer),
      mReaders(readers),
      mReaderProgram(std::move(readerProgram)),
      mLinkFolder(std::move(linkFolder)),
      mLog(log),
      mWatch(context, FolderWatch::kContents, [this] { Refresh(); }) {}

void SystemFonts::WhenReady(std::function<void()> ready) {
  if (mReady) {
    ready();
  } else {
    mWaiting.push_back(std::move(ready));
  }
}

void SystemFonts::Refresh() {
  if (std::exchange(mLooking, true)) {
    mLookAgain = true;
    return;
  }
  SystemFontScan::Start(mContext, mReaderProgram, mLinkFolder,
                        [this, alive = std::weak_ptr<bool>(mAlive)](const SystemFontScan::Listing* listing) {
                          if (!alive.expired()) Take(listing);
                        });
}

void SystemFonts::Take(const SystemFontScan::Listing* listing) {
  mLooking = false;
  if (!listing) {
    mLog.Write("fontconfig's fonts couldn't be listed; the system's fonts are those of the last time");
  } else {
    if (!Store(*listing)) mLog.Print("The system's fonts weren't noted: %s", mDatabase.ErrorText().c_str());
    Watch(listing->folders);
  }
  mReady = true;
  for (const std::function<void()>& waiting : std::exchange(mWaiting, {})) waiting();
  if (std::exchange(mLookAgain, false)) Refresh();
}

bool SystemFonts::Store(const SystemFontScan::Listing& listing) {
  std::map<std::string, LibraryWriter::SystemFile> known = mWriter.SystemFiles();
  std::map<std::string, std::vector<const wire::SystemFace*>> listed;
  for (const wire::SystemFace& face : listing.faces) listed[face.path()].push_back(&face);

  std::map<std::string, int64_t> toDescribe;
  bool changed = false;
  Transaction transaction(mDatabase);
  if (!transaction.Began()) return false;
  for (const auto& [path, faces] : listed) {
    const auto before = known.find(path);
    const bool same = before != known.end() && before->second.size == faces.front()->size() &&
                      before->second.modified == faces.front()->modified();
    int64_t id = same ? before->second.id : 0;
    if (!same) {
      id = mWriter.PutSystemFile(path, faces.front()->size(), faces.front()->modified());
      if (id == 0) return false;
      for (const wire::SystemFace* face : faces) {
        const uint32_t font = mWriter.PutFace(id, face->face());
        if (font == 0 || !mWriter.PutInWorkgroup(font, kSystemWorkgroup)) return false;
      }
      changed = true;
    }
    if (!same || !before->second.described) toDescribe[path] = id;
    if (before != known.end()) known.erase(before);
  }
  for (const auto& [path, file] : known) {
    if (!mWriter.RemoveFile(file.id)) return false;
    changed = true;
  }
  if (changed && transaction.Commit() != 0) return false;
  for (const auto& [path, id] : toDescribe) Describe(path, id);
  return true;
}

void SystemFonts::Describe(const std::string& path, int64_t fileID) {
  wire::ReaderJob job;
  job.set_path(path);
  mReaders.Submit(std::move(job),
                  [this, fileID, alive = std::weak_ptr<bool>(mAlive)](const wire::ReadFile& file) {
                    if (!alive.expired()) TakeDescription(fileID, file);
                  });
}

// Only what fontconfig shows is the system's: faces that it leaves out aren't added.
void SystemFonts::TakeDescription(int64_t fileID, const wire::ReadFile& file) {
  Transaction transaction(mDatabase);
  if (!transaction.Began() || !mWriter.SetDescribed(fileID, file.checksum())) return;
  const std::set<uint32_t> shown = mWriter.FaceIndexes(fileID);
  for (const wire::ReadFace& face : file.faces()) {
    if (shown.count(face.face_index()) > 0 && mWriter.PutFace(fileID, face) == 0) return;
  }
  transaction.Commit();
}

void SystemFonts::Watch(const std::vector<std::string>& folders) {
  for (const std::string& folder : folders) {
    if (!IsBelow(folder, mLinkFolder)) mWatch.Add(folder);
  }
}

}  // namespace kiln
