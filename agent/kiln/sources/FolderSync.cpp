#include "kiln/sources/FolderSync.h"

#include <unistd.h>

#include <algorithm>
#include <boost/asio/post.hpp>
#include <utility>

#include "kiln/fonts/FontLibrary.h"
#include "kiln/fonts/LibraryImport.h"
#include "kiln/sources/OrphanSweep.h"
#include "kiln/system/BoundedLog.h"
#include "kiln/system/Utf8.h"
#include "protocol/ErrorCodes.h"

namespace kiln {
namespace {

std::string NameOf(const std::string& path) {
  return Readable(path.substr(path.rfind('/') + 1));
}

// Reading the same bytes once more would give the same.
bool IsLasting(uint32_t error) {
  return error == codes::kNotAFontFile || error == codes::kCorrupt || error == codes::kFontToolCrashed ||
         error == codes::kInvalidPath;
}

bool IsBelowAny(const std::string& path, const std::vector<std::string>& folders) {
  return std::any_of(folders.begin(), folders.end(),
                     [&path](const std::string& folder) { return path.starts_with(folder + "/"); });
}

}  // namespace

FolderSync::FolderSync(const LibraryServices& services, std::vector<FolderSource> sources, Options options,
                       std::function<void(const std::string&)> onFolder, Done done)
    : mServices(services), mOptions(options), mOnFolder(std::move(onFolder)), mDone(std::move(done)) {
  for (FolderSource& source : sources) mWork.push_back({std::move(source), false, {}, {}});
}

void FolderSync::Start() {
  if (mOptions.announce) {
    mRun = mServices.replications.Begin(mOptions.kind, mWork.empty() ? "" : NameOf(mWork[0].source.folder));
  }
  boost::asio::post(mServices.context, [self = shared_from_this()] { self->Walk(); });
}

void FolderSync::Stop() {
  mStopped = true;
  if (const std::shared_ptr<LibraryImport> import = mImport.lock()) import->Stop();
}

void FolderSync::Walk() {
  if (mCurrent == mWork.size() || mStopped) {
    mCurrent = 0;
    return Import();
  }
  const auto onFolder = [self = shared_from_this()](const std::string& folder) {
    if (!self->mStopped) self->mOnFolder(folder);
  };
  FolderWalk::Start(mServices.context, mWork[mCurrent].source.folder, onFolder,
                    [self = shared_from_this()](FolderWalk::Found& found) {
                      self->Compare(found);
                      ++self->mCurrent;
                      self->Walk();
                    });
}

void FolderSync::Compare(FolderWalk::Found& found) {
  Work& work = mWork[mCurrent];
  work.reached = found.readable;
  mWhole = mWhole && found.readable;
  if (!found.readable) return;
  // Of a folder that fontconfig looks into, too, what Kiln itself shows there is no font.
  const std::string links = mServices.library.links.PathOf("");
  const std::map<std::string, FolderFileStore::File> known =
      mServices.library.folderFiles.Of(work.source.workgroupID);
  for (const auto& [path, file] : found.files) {
    const auto before = known.find(path);
    const bool same = before != known.end() && before->second == file;
    // One that mayn't be read isn't tried, and announced, at every look.
    if (!same && !path.starts_with(links) && access(path.c_str(), R_OK) == 0)
      work.toRead.push_back({path, file});
  }
  for (const auto& [path, file] : known) {
    if (found.files.count(path) == 0 && !IsBelowAny(path, found.unreadable)) work.gone.push_back(path);
  }
  mStepCount += work.toRead.size();
}

void FolderSync::Import() {
  while (mCurrent < mWork.size() && !mWork[mCurrent].reached) ++mCurrent;
  if (mCurrent == mWork.size() || mStopped) return End();
  const Work& work = mWork[mCurrent];
  if (work.toRead.empty()) return EndOne();
  if (!mRun) mRun = mServices.replications.Begin(mOptions.kind, NameOf(work.source.folder));
  mTaken = 0;
  std::vector<std::string> paths;
  for (const File& file : work.toRead) paths.push_back(file.path);
  const auto progress = [self = shared_from_this()](const wire::AddFilesProgress& made) { self->Take(made); };
  const auto done = [self = shared_from_this()](const wire::AddFilesReply&,
                                                const std::vector<uint32_t>& come) {
    self->mChanged.insert(self->mChanged.end(), come.begin(), come.end());
    self->EndOne();
  };
  const auto import = std::make_shared<LibraryImport>(mServices.context, mServices.library, mServices.readers,
                                                      work.source.workgroupID, progress, done);
  mImport = import;
  import->StartFiles(std::move(paths));
}

void FolderSync::Take(const wire::AddFilesProgress& progress) {
  Transaction transaction(*mServices.library.database);
  bool fine = transaction.Began();
  for (const wire::AddedFile& result : progress.results()) {
    const File& file = mWork[mCurrent].toRead[mTaken++];
    ++mStep;
    fine = fine && Note(result, file);
  }
  // A file that wasn't noted is read again the next time.
  if (progress.results_size() > 0 && (!fine || transaction.Commit() != codes::kSuccess)) {
    mServices.log.Print("The files of '%s' couldn't be noted: %s", mWork[mCurrent].source.folder.c_str(),
                        mServices.library.database->ErrorText().c_str());
  }
  const std::string name = mTaken > 0 ? NameOf(mWork[mCurrent].toRead[mTaken - 1].path) : "";
  if (mRun) mRun->Progress(mStep, mStepCount, name);
}

bool FolderSync::Note(const wire::AddedFile& result, const File& file) {
  const FolderSource& source = mWork[mCurrent].source;
  FontLibrary& library = mServices.library;
  if (result.error() != codes::kSuccess) {
    mServices.log.Print("'%s' wasn't taken over: code 0x%08x", result.path().c_str(), result.error());
    return !IsLasting(result.error()) ||
           library.folderFiles.Put(source.workgroupID, file.path, file.known, 0);
  }
  for (const std::string& name : result.postscript_names()) {
    if (source.refused.count(name) > 0 && !library.workgroups.Refuse(source.workgroupID, name)) return false;
  }
  const uint32_t font = result.font_ids_size() > 0 ? result.font_ids(0) : 0;
  return library.folderFiles.Put(source.workgroupID, file.path, file.known, font);
}

void FolderSync::EndOne() {
  const Work& work = mWork[mCurrent];
  FontLibrary& library = mServices.library;
  Transaction transaction(*library.database);
  bool fine = transaction.Began();
  for (const std::string& path : work.gone) {
    fine = fine && library.folderFiles.Remove(work.source.workgroupID, path);
  }
  std::vector<uint32_t> left;
  const int64_t setEntries = mServices.CountSetEntries();
  // A run that was stopped hasn't noted all that it took over.
  fine = fine && (mStopped || library.folderFiles.TakeOutOthers(work.source.workgroupID, left));
  fine = fine && transaction.Commit() == codes::kSuccess;
  if (fine) mChanged.insert(mChanged.end(), left.begin(), left.end());
  if (fine && !left.empty()) mServices.sweep.Run();
  if (fine && mServices.CountSetEntries() != setEntries) mServices.TellSetsChanged();
  mWhole = mWhole && fine;
  ++mCurrent;
  Import();
}

void FolderSync::End() {
  mRun = nullptr;
  mServices.TellLibraryChanged(mChanged);
  mDone(mWhole && !mStopped);
}

}  // namespace kiln
