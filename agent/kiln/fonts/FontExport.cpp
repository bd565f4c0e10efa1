#include "kiln/fonts/FontExport.h"

#include <unistd.h>

#include <boost/asio/post.hpp>
#include <chrono>
#include <utility>

#include "kiln/fonts/FontCopier.h"
#include "kiln/fonts/Vault.h"
#include "protocol/ErrorCodes.h"

namespace kiln {
namespace {

constexpr std::chrono::milliseconds kTick{500};

// Empty when there are none. The vault's lie beside the font with ".afm" behind its name, others instead of
// their font's extension.
std::string MetricsBeside(const std::string& source) {
  const std::string stem = source.substr(0, source.rfind('.'));
  for (const std::string& metrics : {source + ".afm", stem + ".afm", stem + ".AFM"}) {
    if (access(metrics.c_str(), R_OK) == 0) return metrics;
  }
  return "";
}

uint32_t CopyOne(FontExport::File& file, FontCopier& copier) {
  const bool damaged = file.size != 0 && Vault::StateOf(file.source, file.size) == FileState::kUnusable;
  if (damaged) return codes::kCorrupt;
  return copier.Copy(file.source, file.name, file.withMetrics ? MetricsBeside(file.source) : "", file.copy);
}

}  // namespace

FontExport::FontExport(boost::asio::io_context& context, std::string destination, std::vector<File> files,
                       Progress progress, Done done)
    : mContext(context),
      mDestination(std::move(destination)),
      mFiles(std::move(files)),
      mProgress(std::move(progress)),
      mDone(std::move(done)),
      mTimer(context) {}

void FontExport::Start(boost::asio::thread_pool& worker) {
  Tick();
  boost::asio::post(worker, [self = shared_from_this()] {
    FontCopier copier(self->mDestination, self->mStopped);
    const bool nothing = self->mFiles.empty() || self->mStopped;
    const uint32_t error = nothing ? codes::kSuccess : copier.Prepare();
    bool diskFull = false;
    for (File& file : self->mFiles) {
      if (error != codes::kSuccess || self->mStopped) break;
      // Behind a full disk a smaller file might fit, but half a document's fonts help nobody.
      file.error = diskFull ? codes::kDiskFull : CopyOne(file, copier);
      diskFull = file.error == codes::kDiskFull;
      ++self->mFilesDone;
    }
    boost::asio::post(self->mContext, [self, error] { self->Finish(error); });
  });
}

void FontExport::Tick() {
  mTimer.expires_after(kTick);
  mTimer.async_wait([self = shared_from_this()](auto error) {
    if (error || self->mFinished || self->mStopped) return;
    if (!self->mProgress(self->mFilesDone)) return self->Stop();
    self->Tick();
  });
}

void FontExport::Finish(uint32_t error) {
  mFinished = true;
  mTimer.cancel();
  if (!mStopped) mDone(error, mFiles);
}

}  // namespace kiln
