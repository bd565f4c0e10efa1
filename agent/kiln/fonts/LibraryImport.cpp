#include "kiln/fonts/LibraryImport.h"

#include <boost/asio/post.hpp>
#include <filesystem>
#include <system_error>
#include <utility>

#include "kiln/fonts/FolderWalk.h"
#include "kiln/fonts/FontFileNames.h"
#include "kiln/fonts/FontLibrary.h"
#include "kiln/fonts/FontReaderPool.h"
#include "kiln/system/Utf8.h"
#include "protocol/ErrorCodes.h"

namespace kiln {
namespace {

constexpr size_t kBatch = 48;
constexpr size_t kMostInFlight = 144;  // bounds the copies that wait in the incoming folder
constexpr std::chrono::milliseconds kTick{500};

}  // namespace

LibraryImport::LibraryImport(boost::asio::io_context& context, FontLibrary& library, FontReaderPool& readers,
                             uint32_t workgroupID, Progress progress, Done done)
    : mContext(context),
      mLibrary(library),
      mReaders(readers),
      mWorkgroupID(workgroupID),
      mProgress(std::move(progress)),
      mDone(std::move(done)),
      mTimer(context) {}

void LibraryImport::Start(const std::vector<std::string>& paths) {
  mNamed.assign(paths.begin(), paths.end());
  mFinding = true;
  Tick();
  FindFiles();
}

// Folders may be large, and whole disks: they are walked in slices.
void LibraryImport::FindFiles() {
  while (!mNamed.empty()) {
    const std::string path = mNamed.front();
    mNamed.pop_front();
    std::error_code ignored;
    if (std::filesystem::is_directory(path, ignored)) {
      if (!mWalked.insert(path).second) continue;
      const auto done = [self = shared_from_this()](FolderWalk::Found& found) {
        for (const auto& [file, known] : found.files) self->mPaths.push_back(file);
        self->FindFiles();
      };
      return FolderWalk::Start(
          mContext, path, [](const std::string&) {}, done);
    }
    if (!IsMetricsOfFont(path)) mPaths.push_back(path);
  }
  mFinding = false;
  mTimer.cancel();
  StartFiles(std::exchange(mPaths, {}));
}

void LibraryImport::Stop() {
  if (mStored < mSubmitted) mPaths.resize(mSubmitted);
}

void LibraryImport::StartFiles(std::vector<std::string> files) {
  mPaths = std::move(files);
  Tick();
  Submit();
  // Nothing to read, nothing to wait for.
  if (mPaths.empty()) boost::asio::post(mContext, [self = shared_from_this()] { self->StoreBatch(); });
}

void LibraryImport::Submit() {
  while (mSubmitted < mPaths.size() && mSubmitted - mStored < kMostInFlight) {
    Arrival arrival;
    arrival.index = mSubmitted++;
    arrival.path = mPaths[arrival.index];
    arrival.incoming = mLibrary.vault.NewIncomingPath();
    if (!IsUtf8(arrival.path)) {
      arrival.file.set_error(codes::kInvalidPath);
      boost::asio::post(mContext, [self = shared_from_this(), arrival] { self->OnRead(arrival); });
      continue;
    }
    wire::ReaderJob job;
    job.set_path(arrival.path);
    job.set_copy_to(arrival.incoming);
    mReaders.Submit(std::move(job), [self = shared_from_this(), arrival](const wire::ReadFile& file) {
      Arrival read = arrival;
      read.file = file;
      self->OnRead(std::move(read));
    });
  }
}

void LibraryImport::OnRead(Arrival arrival) {
  mArrived.push_back(std::move(arrival));
  const bool last = mStored + mArrived.size() == mPaths.size();
  if (mArrived.size() >= kBatch || last) StoreBatch();
}

void LibraryImport::Tick() {
  mTimer.expires_after(kTick);
  mTimer.async_wait([self = shared_from_this()](auto error) {
    if (error || !self->mDone) return;
    self->mFinding ? self->Report() : self->StoreBatch();
    if (self->mDone) self->Tick();
  });
}

// False when the database failed; what keeps one file out of the library is its result's error.
bool LibraryImport::StoreOne(const Arrival& arrival, wire::AddedFile& result,
                             std::vector<uint32_t>& newFonts) {
  const wire::ReadFile& file = arrival.file;
  LibraryWriter& writer = mLibrary.writer;
  const LibraryWriter::KnownFile known = writer.FileWithHash(file.sha256());
  const std::string name = arrival.path.substr(arrival.path.rfind('/') + 1);
  const std::string extension = known.id != 0 ? known.extension : Vault::ExtensionOf(name);
  // Also for a known file, whose copy in the vault may have gone.
  result.set_error(
      mLibrary.vault.TakeIn(arrival.incoming, file.has_metrics(), file.sha256(), extension, file.size()));
  if (result.error() != codes::kSuccess) return true;
  if (known.id == 0) mPlaced.push_back(mLibrary.vault.PathOf(file.sha256(), extension));
  if (known.id != 0) {
    result.set_already_known(true);
    for (const uint32_t font : known.fontIDs) {
      if (!mLibrary.workgroups.Holds(mWorkgroupID, font)) newFonts.push_back(font);
      if (!writer.PutInWorkgroup(font, mWorkgroupID)) return false;
      result.add_font_ids(font);
    }
    for (const std::string& postScriptName : known.postScriptNames)
      result.add_postscript_names(postScriptName);
    return writer.SetState(known.id, FileState::kSound);
  }
  const int64_t id = writer.AddVaultFile(file, extension, name);
  if (id == 0) return false;
  for (const wire::ReadFace& face : file.faces()) {
    const uint32_t font = writer.PutFace(id, face);
    if (font == 0 || !writer.PutInWorkgroup(font, mWorkgroupID)) return false;
    result.add_font_ids(font);
    result.add_postscript_names(face.postscript_name());
    newFonts.push_back(font);
  }
  return true;
}

// 0, or the database's error, and then nothing of the batch is in the library.
uint32_t LibraryImport::StoreAll(const std::vector<Arrival>& batch, std::vector<wire::AddedFile>& results,
                                 std::vector<uint32_t>& newFonts) {
  Transaction transaction(*mLibrary.database);
  if (!transaction.Began()) return mLibrary.database->Error();
  // It may have been deleted meanwhile.
  if (!mLibrary.workgroups.Exists(mWorkgroupID)) return codes::kWorkgroupNotFound;
  for (size_t i = 0; i < batch.size(); ++i) {
    if (results[i].error() != codes::kSuccess) continue;
    if (!StoreOne(batch[i], results[i], newFonts)) return mLibrary.database->Error();
  }
  return transaction.Commit();
}

void LibraryImport::Count(const wire::AddedFile& result) {
  if (result.error() != codes::kSuccess) {
    mTotals.set_files_failed(mTotals.files_failed() + 1);
  } else if (result.already_known()) {
    mTotals.set_files_known(mTotals.files_known() + 1);
  } else {
    mTotals.set_files_added(mTotals.files_added() + 1);
    mTotals.set_fonts_added(mTotals.fonts_added() + static_cast<uint32_t>(result.font_ids_size()));
  }
}

void LibraryImport::StoreBatch() {
  const std::vector<Arrival> batch = std::exchange(mArrived, {});
  std::vector<wire::AddedFile> results(batch.size());
  for (size_t i = 0; i < batch.size(); ++i) {
    results[i].set_path(Readable(batch[i].path));
    results[i].set_error(batch[i].file.error());
  }
  std::vector<uint32_t> newFonts;
  const uint32_t databaseError = batch.empty() ? codes::kSuccess : StoreAll(batch, results, newFonts);
  if (databaseError != codes::kSuccess) {
    newFonts.clear();
    // Nobody would know of them; on a full disk least of all.
    for (const std::string& path : mPlaced) Vault::Remove(path);
  }
  mPlaced.clear();
  for (size_t i = 0; i < batch.size(); ++i) {
    wire::AddedFile& result = results[i];
    if (databaseError != codes::kSuccess && result.error() == codes::kSuccess) {
      result.Clear();
      result.set_path(Readable(batch[i].path));
      result.set_error(databaseError);
    }
    if (result.error() != codes::kSuccess) mLibrary.vault.Discard(batch[i].incoming);
    Count(result);
    mUnreported[batch[i].index] = std::move(result);
  }
  mNewFonts.insert(mNewFonts.end(), newFonts.begin(), newFonts.end());
  mStored += batch.size();
  Report();
  Submit();
  if (mStored < mPaths.size()) return;
  mTimer.cancel();
  if (const Done done = std::exchange(mDone, nullptr)) done(mTotals, mNewFonts);
}

void LibraryImport::Report() {
  wire::AddFilesProgress progress;
  progress.set_done(static_cast<uint32_t>(mStored));
  progress.set_total(static_cast<uint32_t>(mPaths.size()));
  // Two children read at once: a file waits for those before it.
  for (auto next = mUnreported.begin(); next != mUnreported.end() && next->first == mReported; ++mReported) {
    *progress.add_results() = std::move(next->second);
    next = mUnreported.erase(next);
  }
  mProgress(progress);
}

}  // namespace kiln
