#pragma once

#include <atomic>
#include <chrono>
#include <cstdint>
#include <memory>
#include <mutex>
#include <string>

#include "GTypes.h"
#include "client/Connection.h"

/// The library's side of one facade: makes a connection when a call needs one, again after it broke, and
/// tells the agent anew what belongs to the connection.
///
/// Life:
///   1. Idle: no connection yet, or the last one broke.
///   2. Connected: the agent has greeted back.
///   3. Dropped: by Drop(); every call ends with GAgentIF::kShutdown from then on.
///
/// Thread: any.
class Session {
 public:
  /// How long a call waits for an agent whose process runs but doesn't listen or greet yet.
  static constexpr std::chrono::milliseconds kConnectWindow{3000};
  /// The same for the calls that follow a wait in vain, for a while: a start-up makes several. Enough for an
  /// agent that has to wait for the locks of the one before.
  static constexpr std::chrono::milliseconds kShortWindow{700};
  static constexpr std::chrono::seconds kShortWindowsLast{5};

  /// \param clientUUID  Names this process to the agent.
  /// \param events  As Connection takes it; must outlive the session.
  /// \param waitedInVain  WaitedInVain() of the session before this one.
  Session(std::string clientUUID, Connection::EventSink events,
          Connection::Clock::time_point waitedInVain = {});

  /// Connects if need be and makes one request.
  ///
  /// \return As Connection::Call(); GIPCClient::kServiceUnavailable also when there is no agent to connect
  /// to;
  ///     CoreErrorCodes::kVersionMismatch when the agent speaks another protocol.
  TErrCode Call(kiln::wire::ClientMessage& request, Connection::Incoming& reply, const CallLimit& limit = {},
                const Connection::ProgressSink& progress = {});

  /// As Call(), but 0 without doing anything when there is no connection.
  TErrCode CallIfConnected(kiln::wire::ClientMessage& request);

  /// Which host this is, for the greeting.
  void SetHostType(int hostType) { mHostType = hostType; }
  /// The log file to name to the agent on every new connection.
  void SetLogFile(const std::string& fileName);

  /// Ends all calls and the connection. Waits for the reading thread.
  void Drop();

  /// When an agent's process was last there but didn't greet in time; the epoch for never.
  Connection::Clock::time_point WaitedInVain() const { return mWaitedInVain; }

  /// Whether a process of the agent runs in this user session.
  static bool IsAgentProcessRunning();

 private:
  std::shared_ptr<Connection> Connected(TErrCode& code);
  std::shared_ptr<Connection> Connect(TErrCode& code);
  TErrCode Greet(Connection& connection, std::chrono::milliseconds limit);

  const std::string mClientUUID;
  const Connection::EventSink mEvents;
  std::atomic<int> mHostType = 0;
  std::atomic<bool> mDropped = false;
  std::mutex mConnectMutex;  // held while connecting, so that callers wait for one attempt
  std::atomic<Connection::Clock::time_point> mWaitedInVain;
  std::mutex mMutex;
  std::shared_ptr<Connection> mConnection;
  std::string mLogFile;
};
