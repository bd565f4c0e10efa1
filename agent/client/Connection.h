#pragma once

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <unordered_map>

#include "GTypes.h"
#include "protocol/Kiln.pb.h"

/// How long a call may take.
struct CallLimit {
  /// From sending to the answer; of a call with a ProgressSink, from each progress message to the next.
  std::chrono::milliseconds answer{5000};
  /// For a call that may take longer than an agent that lives may be silent: the agent is pinged meanwhile,
  /// and has to say anything at all within this time. 0 doesn't ask.
  std::chrono::milliseconds silence{0};
};

/// One connection to the agent: requests go out on the callers' threads, a thread of its own reads what comes
/// back, completes them and hands the events on.
///
/// Life:
///   1. Open: made by Open().
///   2. Broken: the agent closed, sent what can't be read, or didn't take what was sent. All calls have
///   ended;
///      later ones end at once. A connection that has broken stays so.
///
/// Thread: any; several calls may be under way at once.
class Connection {
 public:
  using Clock = std::chrono::steady_clock;
  /// A message of the agent, with its place in the order in which this process received all of them: a reply
  /// and an event are handled on different threads, and what came later holds.
  struct Incoming {
    kiln::wire::ServerMessage message;
    uint64_t order = 0;
  };
  /// Takes an event on the reading thread; must not block or throw.
  using EventSink = std::function<void(Incoming&&)>;
  /// Takes a progress message of the request, on the thread of the call.
  using ProgressSink = std::function<void(const kiln::wire::ServerMessage&)>;

  /// Connects to the agent's socket, without saying hello.
  ///
  /// \param code  Receives 0; GIPCSender::kReceiverNotAvailable when nobody listens there;
  ///     GIPCClient::kServiceUnavailable when the listener isn't this user's or doesn't accept.
  /// \return Null when code isn't 0.
  static std::unique_ptr<Connection> Open(const std::string& socketPath, EventSink events, TErrCode& code);

  /// Breaks the connection and waits for its thread. Not for the reading thread itself.
  ~Connection();
  Connection(const Connection&) = delete;
  Connection& operator=(const Connection&) = delete;

  /// Sends a request and waits for its answer.
  ///
  /// \param request  Its id is set here.
  /// \param reply  Receives the answer, also one that holds an error.
  /// \return 0 or the answer's error; GAgentIF::kShutdown when the connection is or gets broken;
  ///     GIPCClient::kServiceUnavailable when the limit has passed; GIPCReceiver::kMessageTooLarge, with
  ///     nothing sent. The reply is untouched in the last three cases.
  TErrCode Call(kiln::wire::ClientMessage& request, const CallLimit& limit, Incoming& reply,
                const ProgressSink& progress = {});

  bool IsOpen() const;

  /// Ends all calls with GAgentIF::kShutdown. Never waits.
  void Break();

 private:
  struct PendingCall {
    bool wantsProgress = false;
    std::deque<Incoming> messages;
  };
  /// More progress than this waiting for a caller is no progress of this agent's.
  static constexpr size_t kMaxMessagesOfCall = 4096;

  Connection(int socket, EventSink events);
  void ReadUntilBroken();
  bool Dispatch(Incoming&& incoming);
  TErrCode Await(uint32_t id, Clock::time_point start, const CallLimit& limit, Incoming& reply,
                 const ProgressSink& progress);
  TErrCode Send(const std::string& frame, Clock::time_point deadline);
  void Ping(uint32_t id, Clock::time_point deadline);
  uint32_t NewID();

  const int mSocket;
  const EventSink mEvents;
  std::mutex mSendMutex;
  mutable std::mutex mMutex;
  std::condition_variable mAnswered;
  Clock::time_point mLastHeard;
  bool mBroken = false;
  uint32_t mLastID = 0;
  std::unordered_map<uint32_t, PendingCall> mPending;
  std::thread mReader;
};
