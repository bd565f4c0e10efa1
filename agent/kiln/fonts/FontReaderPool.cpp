#include "kiln/fonts/FontReaderPool.h"

#include <algorithm>
#include <array>
#include <boost/asio/posix/stream_descriptor.hpp>
#include <boost/asio/post.hpp>
#include <boost/asio/steady_timer.hpp>
#include <boost/asio/write.hpp>
#include <cerrno>
#include <cstring>
#include <utility>

#include "kiln/system/BoundedLog.h"
#include "kiln/system/ChildProcess.h"
#include "protocol/ErrorCodes.h"
#include "protocol/Framing.h"

namespace kiln {
namespace {

constexpr size_t kWorkers = 2;
// Enough that a child never waits for its next file, and few enough that two share a short list evenly.
constexpr size_t kAhead = 8;
constexpr std::chrono::seconds kIdle{5};

wire::ReadFile Failed(uint32_t error) {
  wire::ReadFile file;
  file.set_error(error);
  return file;
}

}  // namespace

// One child and the files given to it. Handlers hold the worker; after End() they do nothing.
class FontReaderPool::Worker : public std::enable_shared_from_this<Worker> {
 public:
  Worker(FontReaderPool& pool, std::unique_ptr<ChildProcess> child)
      : mPool(&pool),
        mChild(std::move(child)),
        mInput(pool.mContext, mChild->TakeInput()),
        mOutput(pool.mContext, mChild->TakeOutput()),
        mTimer(pool.mContext) {}

  size_t Busy() const { return mSent.size(); }

  void Send(Job job) {
    AppendFrame(job.request, mToWrite);
    mSent.push_back(std::move(job));
    if (mSent.size() == 1) Watch();
    if (!mWriting) Write();
  }

  void Read() {
    mOutput.async_read_some(boost::asio::buffer(mBuffer),
                            [self = shared_from_this()](auto error, size_t count) {
                              if (!self->mPool) return;
                              if (error) return self->End();
                              self->mFrames.Append(self->mBuffer.data(), count);
                              if (self->TakeAnswers()) self->Read();
                            });
  }

  // For the pool's own end: no answers any more.
  void Abandon() {
    mPool = nullptr;
    Close();
  }

 private:
  void Write() {
    mWriting = true;
    mWritten = std::exchange(mToWrite, {});
    boost::asio::async_write(mInput, boost::asio::buffer(mWritten),
                             [self = shared_from_this()](auto error, size_t) {
                               self->mWriting = false;
                               // A broken pipe shows at the output, too, with the answers that came before
                               // it.
                               if (self->mPool && !error && !self->mToWrite.empty()) self->Write();
                             });
  }

  // While there is work, the time for one file; else the time that an idle child is kept.
  void Watch() {
    mTimer.expires_after(mSent.empty() ? kIdle : std::chrono::seconds(kLongestRead));
    mTimer.async_wait([self = shared_from_this()](auto error) {
      // Set anew while this wait was on its way: not over after all.
      const bool over = self->mTimer.expiry() <= std::chrono::steady_clock::now();
      if (!error && over && self->mPool) self->End();
    });
  }

  // False when the worker has ended.
  bool TakeAnswers() {
    std::string_view body;
    for (;;) {
      const FrameReader::Result result = mFrames.Next(body);
      if (result == FrameReader::Result::kNeedMore) return true;
      wire::ReadFile file;
      const bool sound = result == FrameReader::Result::kFrame && !mSent.empty() &&
                         file.ParseFromArray(body.data(), static_cast<int>(body.size()));
      if (!sound) {
        End();
        return false;
      }
      const Job job = std::move(mSent.front());
      mSent.pop_front();
      Watch();
      mPool->OnAnswer(job, file);
      if (!mPool) return false;
    }
  }

  void End() {
    FontReaderPool* pool = std::exchange(mPool, nullptr);
    Close();
    pool->OnEnd(this, std::exchange(mSent, {}));
  }

  void Close() {
    mTimer.cancel();
    boost::system::error_code ignored;
    mInput.close(ignored);
    mOutput.close(ignored);
    mChild.reset();
  }

  FontReaderPool* mPool;
  std::unique_ptr<ChildProcess> mChild;
  boost::asio::posix::stream_descriptor mInput;
  boost::asio::posix::stream_descriptor mOutput;
  boost::asio::steady_timer mTimer;
  std::array<char, 65536> mBuffer{};
  FrameReader mFrames;
  std::deque<Job> mSent;  // in the order of the answers
  std::string mToWrite;
  std::string mWritten;
  bool mWriting = false;
};

FontReaderPool::FontReaderPool(boost::asio::io_context& context, std::string program, BoundedLog& log)
    : mContext(context), mProgram(std::move(program)), mLog(log) {}

FontReaderPool::~FontReaderPool() {
  for (const std::shared_ptr<Worker>& worker : mWorkers) worker->Abandon();
}

void FontReaderPool::Submit(wire::ReaderJob job, Answer answer) {
  mQueue.push_back({std::move(job), std::move(answer)});
  FeedSoon();
}

void FontReaderPool::FeedSoon() {
  boost::asio::post(mContext, [this, alive = std::weak_ptr<bool>(mAlive)] {
    if (!alive.expired()) Feed();
  });
}

// Null when no child can be started.
FontReaderPool::Worker* FontReaderPool::LeastBusy() {
  const auto least = std::min_element(mWorkers.begin(), mWorkers.end(),
                                      [](const auto& a, const auto& b) { return a->Busy() < b->Busy(); });
  const bool enough = least != mWorkers.end() && ((*least)->Busy() == 0 || mWorkers.size() == kWorkers);
  if (enough) return least->get();
  std::unique_ptr<ChildProcess> child = ChildProcess::Start(mProgram, {});
  if (!child) {
    mLog.Print("Can't start %s: %s", mProgram.c_str(), std::strerror(errno));
    return least == mWorkers.end() ? nullptr : least->get();
  }
  mWorkers.push_back(std::make_shared<Worker>(*this, std::move(child)));
  mWorkers.back()->Read();
  return mWorkers.back().get();
}

void FontReaderPool::Feed() {
  while (!mQueue.empty()) {
    Worker* worker = LeastBusy();
    if (worker && worker->Busy() >= kAhead) return;
    Job job = std::move(mQueue.front());
    mQueue.pop_front();
    if (worker) {
      worker->Send(std::move(job));
    } else {
      job.answer(Failed(codes::kFontToolFailedToLaunch));
    }
  }
}

void FontReaderPool::OnAnswer(const Job& job, const wire::ReadFile& file) {
  FeedSoon();
  job.answer(file);
}

void FontReaderPool::OnEnd(Worker* worker, std::deque<Job> unanswered) {
  const auto place = std::find_if(mWorkers.begin(), mWorkers.end(),
                                  [worker](const auto& one) { return one.get() == worker; });
  if (place != mWorkers.end()) mWorkers.erase(place);
  if (unanswered.empty()) return;
  const Job culprit = std::move(unanswered.front());
  unanswered.pop_front();
  mQueue.insert(mQueue.begin(), std::make_move_iterator(unanswered.begin()),
                std::make_move_iterator(unanswered.end()));
  mLog.Print("The font reader ended at '%s'", culprit.request.path().c_str());
  OnAnswer(culprit, Failed(codes::kFontToolCrashed));
}

}  // namespace kiln
