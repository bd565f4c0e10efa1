#include "kiln/fonts/SystemFontScan.h"

#include <unistd.h>

#include <boost/asio/error.hpp>
#include <boost/asio/post.hpp>
#include <string_view>
#include <utility>

#include "kiln/system/ChildProcess.h"

namespace kiln {
namespace {

// A first look without fontconfig's caches reads every font of the system.
constexpr std::chrono::minutes kLongest{5};

}  // namespace

void SystemFontScan::Start(boost::asio::io_context& context, const std::string& program,
                           const std::string& excluded, Done done) {
  std::make_shared<SystemFontScan>(context, std::move(done))->Run(program, excluded);
}

SystemFontScan::SystemFontScan(boost::asio::io_context& context, Done done)
    : mContext(context), mDone(std::move(done)), mOutput(context), mTimer(context) {}

SystemFontScan::~SystemFontScan() = default;

void SystemFontScan::Run(const std::string& program, const std::string& excluded) {
  mChild = ChildProcess::Start(program, {"--system", excluded});
  if (!mChild) {
    boost::asio::post(mContext, [self = shared_from_this()] { self->Finish(false); });
    return;
  }
  close(mChild->TakeInput());
  mOutput.assign(mChild->TakeOutput());
  mTimer.expires_after(kLongest);
  mTimer.async_wait([self = shared_from_this()](auto error) {
    if (!error) self->Finish(false);
  });
  Read();
}

void SystemFontScan::Read() {
  mOutput.async_read_some(boost::asio::buffer(mBuffer),
                          [self = shared_from_this()](auto error, size_t count) {
                            if (error == boost::asio::error::eof)
                              return self->Finish(self->mListing.folders.size() > 0);
                            if (error) return self->Finish(false);
                            self->mFrames.Append(self->mBuffer.data(), count);
                            if (self->TakeFrames()) self->Read();
                          });
}

bool SystemFontScan::TakeFrames() {
  std::string_view body;
  for (;;) {
    const FrameReader::Result result = mFrames.Next(body);
    if (result == FrameReader::Result::kNeedMore) return true;
    wire::SystemListing listing;
    if (result != FrameReader::Result::kFrame ||
        !listing.ParseFromArray(body.data(), static_cast<int>(body.size()))) {
      Finish(false);
      return false;
    }
    if (listing.has_face()) {
      mListing.faces.push_back(std::move(*listing.mutable_face()));
    } else {
      mListing.folders.push_back(listing.folder());
    }
  }
}

void SystemFontScan::Finish(bool whole) {
  const Done done = std::exchange(mDone, nullptr);
  if (!done) return;
  mTimer.cancel();
  boost::system::error_code ignored;
  mOutput.close(ignored);
  mChild.reset();
  done(whole ? &mListing : nullptr);
}

}  // namespace kiln
