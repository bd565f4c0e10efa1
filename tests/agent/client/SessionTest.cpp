#include <gtest/gtest.h>

#include <atomic>
#include <future>

#include "FakeAgent.h"
#include "GErrorCodes.h"
#include "client/Session.h"
#include "protocol/Version.h"
#include "support/FakeSystem.h"
#include "support/PrivateHome.h"
#include "support/ScopedReplacement.h"

namespace {

using kiln::wire::ClientMessage;

class SessionTest : public testing::Test {
 protected:
  TErrCode Ping() {
    ClientMessage request;
    request.mutable_ping();
    Connection::Incoming reply;
    return m_session.Call(request, reply);
  }
  void RunAgentProcess() { m_processes.running.push_back({1, "/opt/Kiln/Kiln"}); }

  PrivateHome m_home;
  FakeProcesses m_processes;
  ScopedReplacement<platform::Processes> m_replaced{m_processes};
  Session m_session{"0-1-2-3", [](auto&&) {}};
};

TEST_F(SessionTest, WithoutAnAgentProcessThereIsNothingToWaitFor) {
  EXPECT_EQ(Ping(), GIPCClient::kServiceUnavailable);
  m_processes.running.push_back({2, "/opt/Kiln/KilnFontReader"});
  EXPECT_FALSE(Session::IsAgentProcessRunning());
  RunAgentProcess();
  EXPECT_TRUE(Session::IsAgentProcessRunning());
}

TEST_F(SessionTest, WaitsForAnAgentThatIsStarting) {
  RunAgentProcess();
  auto ping = std::async(std::launch::async, [this] { return Ping(); });
  std::this_thread::sleep_for(std::chrono::milliseconds(100));
  FakeAgent agent;
  EXPECT_EQ(ping.get(), CoreErrorCodes::kSuccess);
}

TEST_F(SessionTest, WithoutASoundGreetingThereIsNoAgent) {
  const auto greet = [](uint32_t version) {
    return [version](int socket) {
      FakeAgent::Request request;
      if (!FakeAgent::ReceiveFrame(socket, request)) return;
      auto reply = FakeAgent::ReplyTo(request.id());
      if (version != 0) reply.mutable_hello()->set_protocol_version(version);
      FakeAgent::SendFrame(socket, reply);
    };
  };
  const std::pair<FakeAgent::Behaviour, TErrCode> cases[] = {
      {greet(kiln::kProtocolVersion + 1), CoreErrorCodes::kVersionMismatch},
      {greet(0), CoreErrorCodes::kVersionMismatch},
      {[](int) {}, GIPCClient::kServiceUnavailable},
      {FakeAgent::Drain, GIPCClient::kServiceUnavailable}};
  for (const auto& [behaviour, code] : cases) {
    auto agent = FakeAgent::Misbehaving(behaviour);
    EXPECT_EQ(Ping(), code);
  }
}

TEST_F(SessionTest, AnAgentOnItsWayOutIsFollowedByTheNext) {
  RunAgentProcess();
  std::atomic<int> connections = 0;
  auto agent = FakeAgent::Misbehaving([&](int socket) {
    if (++connections < 3) return;
    if (FakeAgent::Greet(socket)) {
      FakeAgent::Request request;
      if (!FakeAgent::ReceiveFrame(socket, request)) return;
      auto reply = FakeAgent::ReplyTo(request.id());
      FakeAgent::SendFrame(socket, reply);
    }
  });
  EXPECT_EQ(Ping(), CoreErrorCodes::kSuccess);
}

TEST_F(SessionTest, ConnectsAnewAsTheSameClientAndNamesTheLogAgain) {
  FakeAgent agent;
  ASSERT_EQ(Ping(), CoreErrorCodes::kSuccess);
  m_session.SetLogFile("InDesign.log");
  agent.BreakConnections();
  // The break may be noticed by this call or before it.
  if (const TErrCode code = Ping()) {
    EXPECT_EQ(code, GAgentIF::kShutdown);
    EXPECT_EQ(Ping(), CoreErrorCodes::kSuccess);
  }
  EXPECT_EQ(agent.Count(ClientMessage::kHello), 2);
  for (const auto& request : agent.Requests()) {
    if (request.has_hello()) {
      EXPECT_EQ(request.hello().client_uuid(), "0-1-2-3");
    }
    if (request.has_begin_logging()) {
      EXPECT_EQ(request.begin_logging().file_name(), "InDesign.log");
    }
  }
  EXPECT_EQ(agent.Count(ClientMessage::kBeginLogging), 1);
}

TEST_F(SessionTest, DroppingEndsACallUnderWayAndEveryLaterOne) {
  std::promise<void> asked;
  auto agent = FakeAgent::Misbehaving([&](int socket) {
    FakeAgent::Request request;
    if (!FakeAgent::Greet(socket) || !FakeAgent::ReceiveFrame(socket, request)) return;
    asked.set_value();
    FakeAgent::Drain(socket);
  });
  auto ping = std::async(std::launch::async, [this] { return Ping(); });
  asked.get_future().wait();
  m_session.Drop();
  EXPECT_EQ(ping.get(), GAgentIF::kShutdown);
  EXPECT_EQ(Ping(), GAgentIF::kShutdown);
}

TEST_F(SessionTest, EndingWithoutAConnectionMakesNone) {
  FakeAgent agent;
  ClientMessage request;
  request.mutable_end_session();
  EXPECT_EQ(m_session.CallIfConnected(request), CoreErrorCodes::kSuccess);
  EXPECT_TRUE(agent.Requests().empty());
}

}  // namespace
