#pragma once

#include <boost/asio/executor_work_guard.hpp>
#include <boost/asio/io_context.hpp>
#include <boost/asio/local/stream_protocol.hpp>
#include <boost/asio/steady_timer.hpp>
#include <functional>
#include <memory>
#include <set>
#include <string>
#include <thread>
#include <vector>

#include "kiln/server/ActivationRequests.h"
#include "kiln/server/AgentState.h"
#include "kiln/server/ClientHub.h"
#include "kiln/server/Connection.h"
#include "kiln/server/LibraryRequests.h"
#include "kiln/server/SessionRequests.h"
#include "kiln/server/SetRequests.h"
#include "kiln/server/WorkgroupRequests.h"

namespace kiln {

/// Kiln at work: the socket, its clients, and the library behind them. All runs on the thread of the
/// io_context, but for the bytes of the connections: they have a thread of their own, so that clients see a
/// Kiln that works on something long as one that lives.
class Server : public ClientHub {
 public:
  struct Options {
    std::string readerProgram;    ///< KilnFontReader
    int exitWhenIdleSeconds = 0;  ///< 0: never
  };

  /// \param context  Outlives the server, and whoever made it runs it.
  /// \param wire  For the connections; run by a thread of the server's. Outlives `context`.
  Server(boost::asio::io_context& context, boost::asio::io_context& wire, const KilnPaths& paths,
         Options options, BoundedLog& log);
  ~Server() override;

  /// Begins to listen on a socket that isn't there yet, for this user alone. From here on clients may
  /// connect; they are answered once OpenLibrary() has run. \return 0 or an errno.
  int Listen(const std::string& socketPath);

  /// Opens the library. A library that can't be used doesn't end the server: clients are told why.
  void OpenLibrary();

  /// Tells the clients, and stops the io_context when they have been told or a moment has passed.
  void Stop();

  void Broadcast(const wire::ServerMessage& event) override;
  void SendTo(int64_t clientID, const wire::ServerMessage& event) override;
  size_t CountOfClients() const override;

 private:
  void RunWire();
  void Accept();
  void Take(boost::asio::local::stream_protocol::socket socket);
  void OnMessage(const std::shared_ptr<Connection>& connection, const wire::ClientMessage& message);
  bool GaveUpWaiting(Connection& connection, const wire::ClientMessage& message);
  void Answer(const std::shared_ptr<Connection>& connection, const wire::ClientMessage& message);
  Handling HandleByLibrary(const std::shared_ptr<Connection>& connection, const wire::ClientMessage& message,
                           wire::ServerMessage& reply, ActivationChange& change);
  void Send(const std::function<bool(const Connection&)>& isFor, const wire::ServerMessage& event);
  void OnClosed(const std::shared_ptr<Connection>& connection);
  void WatchIdle();

  boost::asio::io_context& mContext;
  boost::asio::io_context& mWire;
  boost::asio::executor_work_guard<boost::asio::io_context::executor_type> mWireStays;
  std::thread mWireThread;
  const Options mOptions;
  BoundedLog& mLog;
  boost::asio::local::stream_protocol::acceptor mAcceptor;
  boost::asio::steady_timer mIdle;
  boost::asio::steady_timer mPause;
  std::string mSocketPath;
  bool mStopping = false;
  std::set<std::shared_ptr<Connection>> mConnections;
  bool mAnswering = false;
  std::vector<std::function<void()>> mHeldEvents;  // until the reply has gone out
  FontReaderPool mReaders;
  AgentState mState;
  SessionRequests mSession;
  ActivationRequests mActivation;
  LibraryRequests mLibrary;
  WorkgroupRequests mWorkgroups;
  SetRequests mSets;
};

}  // namespace kiln
