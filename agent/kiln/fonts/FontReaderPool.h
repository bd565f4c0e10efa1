#pragma once

#include <boost/asio/io_context.hpp>
#include <deque>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "protocol/FontReading.pb.h"

namespace kiln {

class BoundedLog;

/// Has font files read by children (KilnFontReader), two at a time, each with some files ahead. A child that
/// dies, hangs or answers nonsense costs the file that it was at; the others go to the next child.
///
/// Thread: that of the io_context, from which the answers come, too. The process must ignore SIGPIPE.
class FontReaderPool {
 public:
  using Answer = std::function<void(const wire::ReadFile&)>;

  FontReaderPool(boost::asio::io_context& context, std::string program, BoundedLog& log);
  ~FontReaderPool();

  /// \param answer  Called once, never from within this call: with the file's record, or with an error;
  ///                kFontToolCrashed when the file ended the child, kFontToolFailedToLaunch when there is
  ///                none.
  void Submit(wire::ReaderJob job, Answer answer);

  /// Seconds that one file may take.
  static constexpr int kLongestRead = 30;

 private:
  struct Job {
    wire::ReaderJob request;
    Answer answer;
  };
  class Worker;

  void Feed();
  void FeedSoon();
  Worker* LeastBusy();
  void OnAnswer(const Job& job, const wire::ReadFile& file);
  void OnEnd(Worker* worker, std::deque<Job> unanswered);

  boost::asio::io_context& mContext;
  const std::string mProgram;
  BoundedLog& mLog;
  std::deque<Job> mQueue;
  std::vector<std::shared_ptr<Worker>> mWorkers;
  std::shared_ptr<bool> mAlive = std::make_shared<bool>(true);
};

}  // namespace kiln
