#include <gtest/gtest.h>
#include <unistd.h>

#include <atomic>
#include <future>

#include "FakeAgent.h"
#include "GErrorCodes.h"
#include "client/Connection.h"
#include "protocol/Framing.h"
#include "protocol/SocketPath.h"
#include "support/PrivateHome.h"

namespace {

using kiln::wire::ClientMessage;

constexpr CallLimit kShort{.answer = std::chrono::milliseconds{100}};
constexpr CallLimit kLong{.answer = std::chrono::milliseconds{20000}};

class ConnectionTest : public testing::Test {
 protected:
  std::unique_ptr<Connection> Open(Connection::EventSink events = [](auto&&) {}) {
    TErrCode code = 1;
    auto connection = Connection::Open(kiln::SocketPath(), std::move(events), code);
    EXPECT_EQ(code, CoreErrorCodes::kSuccess);
    return connection;
  }
  static TErrCode Ping(Connection& connection, const CallLimit& limit) {
    ClientMessage request;
    request.mutable_ping();
    Connection::Incoming reply;
    return connection.Call(request, limit, reply);
  }

  PrivateHome m_home;
};

TEST_F(ConnectionTest, NobodyListens) {
  TErrCode code = 0;
  EXPECT_EQ(Connection::Open(
                kiln::SocketPath(), [](auto&&) {}, code),
            nullptr);
  EXPECT_EQ(code, GIPCSender::kReceiverNotAvailable);
  EXPECT_EQ(Connection::Open(
                m_home.Folder().Path(std::string(200, 'x')), [](auto&&) {}, code),
            nullptr);
  EXPECT_EQ(code, GIPCSender::kReceiverNotAvailable);
}

struct PeerCase {
  const char* name;
  FakeAgent::Behaviour behaviour;
  TErrCode code;
  bool staysOpen;
};

std::string Header(uint32_t length) {
  return {char(length >> 24), char(length >> 16), char(length >> 8), char(length)};
}

// Waits for a request, and then does something about it.
FakeAgent::Behaviour OnRequest(std::function<void(int socket, uint32_t id)> then) {
  return [then = std::move(then)](int socket) {
    FakeAgent::Request request;
    if (FakeAgent::ReceiveFrame(socket, request)) then(socket, request.id());
  };
}

FakeAgent::Behaviour SendAndDrain(const std::string& bytes) {
  return [bytes](int socket) {
    FakeAgent::SendBytes(socket, bytes);
    FakeAgent::Drain(socket);
  };
}

class MisbehavingPeer : public ConnectionTest, public testing::WithParamInterface<PeerCase> {};

TEST_P(MisbehavingPeer, EndsTheCallWithACode) {
  auto agent = FakeAgent::Misbehaving(GetParam().behaviour);
  const auto connection = Open();
  EXPECT_EQ(Ping(*connection, GetParam().staysOpen ? kShort : kLong), GetParam().code);
  EXPECT_EQ(connection->IsOpen(), GetParam().staysOpen);
  if (!GetParam().staysOpen) {
    EXPECT_EQ(Ping(*connection, kLong), GAgentIF::kShutdown);
  }
}

const PeerCase kPeers[] = {
    {"Hangs", FakeAgent::Drain, GIPCClient::kServiceUnavailable, true},
    {"ClosesAtOnce", [](int) {}, GAgentIF::kShutdown, false},
    {"ClosesInsteadOfAnswering", OnRequest([](int, uint32_t) {}), GAgentIF::kShutdown, false},
    {"ClosesMidMessage",
     OnRequest([](int socket, uint32_t) { FakeAgent::SendBytes(socket, Header(100) + "half"); }),
     GAgentIF::kShutdown, false},
    {"AnswersGarbage", SendAndDrain(Header(7) + "\xFF\xFF\xFF\xFF\xFF\xFF\xFF"), GAgentIF::kShutdown, false},
    {"AnnouncesMoreThanAFrameMayHold", SendAndDrain(Header(kiln::kMaxFrameLength + 1)), GAgentIF::kShutdown,
     false},
    {"AnswersAnotherRequest", OnRequest([](int socket, uint32_t id) {
       FakeAgent::SendFrame(socket, FakeAgent::ReplyTo(id + 1000));
       FakeAgent::Drain(socket);
     }),
     GIPCClient::kServiceUnavailable, true},
    {"ReportsProgressToACallThatHasNone", OnRequest([](int socket, uint32_t id) {
       auto reply = FakeAgent::ReplyTo(id);
       reply.mutable_progress();
       while (FakeAgent::SendFrame(socket, reply)) {
       }
     }),
     GIPCClient::kServiceUnavailable, true},
};

INSTANTIATE_TEST_SUITE_P(Peers, MisbehavingPeer, testing::ValuesIn(kPeers),
                         [](const auto& info) { return info.param.name; });

TEST_F(ConnectionTest, APeerThatDoesNotReadHoldsASenderNoLongerThanItsLimit) {
  std::promise<void> done;
  auto agent = FakeAgent::Misbehaving([&](int) { done.get_future().wait(); });
  const auto connection = Open();
  ClientMessage request;
  request.mutable_log()->set_text(std::string(8 << 20, 'x'));
  Connection::Incoming reply;
  EXPECT_EQ(connection->Call(request, kShort, reply), GIPCClient::kServiceUnavailable);
  EXPECT_FALSE(connection->IsOpen());  // half a frame is on its way
  done.set_value();
}

TEST_F(ConnectionTest, AMessageThatIsTooLongIsNotSent) {
  FakeAgent agent;
  const auto connection = Open();
  ClientMessage request;
  request.mutable_log()->set_text(std::string(kiln::kMaxFrameLength + 1, 'x'));
  Connection::Incoming reply;
  EXPECT_EQ(connection->Call(request, kLong, reply), GIPCReceiver::kMessageTooLarge);
  EXPECT_EQ(Ping(*connection, kLong), CoreErrorCodes::kSuccess);
}

TEST_F(ConnectionTest, ProgressOfEitherKindKeepsACallAliveBeyondItsLimit) {
  auto agent = FakeAgent::Misbehaving(OnRequest([](int socket, uint32_t id) {
    for (uint32_t i = 1; i <= 10; ++i) {
      auto reply = FakeAgent::ReplyTo(id);
      i % 2 == 0 ? reply.mutable_progress()->set_done(i) : reply.mutable_task_progress()->set_done(i);
      FakeAgent::SendFrame(socket, reply);
      std::this_thread::sleep_for(std::chrono::milliseconds(30));
    }
    auto reply = FakeAgent::ReplyTo(id);
    for (uint32_t i = 1; i <= 20'000; ++i) {  // more than may wait for a caller
      reply.mutable_task_progress()->set_done(i);
      FakeAgent::SendFrame(socket, reply);
    }
    reply.mutable_rescan();
    FakeAgent::SendFrame(socket, reply);
    FakeAgent::Drain(socket);
  }));
  const auto connection = Open();
  ClientMessage request;
  request.mutable_rescan();
  Connection::Incoming reply;
  uint32_t last = 0;
  const auto take = [&](const auto& message) {
    last = message.has_progress() ? message.progress().done() : message.task_progress().done();
    if (last > 10) std::this_thread::sleep_for(std::chrono::milliseconds(100));
  };
  EXPECT_EQ(connection->Call(request, {.answer = std::chrono::milliseconds{200}}, reply, take),
            CoreErrorCodes::kSuccess);
  EXPECT_EQ(last, 20'000u);
  EXPECT_TRUE(reply.message.has_rescan());
}

TEST_F(ConnectionTest, ALongCallOutlastsAnAgentThatWorksButNotOneThatIsStopped) {
  constexpr CallLimit kWatched{.answer = std::chrono::milliseconds{20000},
                               .silence = std::chrono::milliseconds{1500}};
  std::atomic<bool> answerPings = true;
  auto agent = FakeAgent::Misbehaving([&](int socket) {
    uint32_t id = 0;
    int pings = 0;
    for (FakeAgent::Request request; FakeAgent::ReceiveFrame(socket, request);) {
      auto reply = FakeAgent::ReplyTo(request.id());
      if (!request.has_ping()) {
        id = request.id();
      } else if (answerPings) {
        FakeAgent::SendFrame(socket, reply);
        if (++pings < 2) continue;
        reply.set_reply_to(id);
        FakeAgent::SendFrame(socket, reply);
      }
    }
  });
  const auto connection = Open();
  ClientMessage request;
  request.mutable_activate_document_fonts();
  Connection::Incoming reply;
  EXPECT_EQ(connection->Call(request, kWatched, reply), CoreErrorCodes::kSuccess);
  answerPings = false;
  EXPECT_EQ(connection->Call(request, kWatched, reply), GIPCClient::kServiceUnavailable);
}

TEST_F(ConnectionTest, AnswersMayComeInAnyOrder) {
  auto agent = FakeAgent::Misbehaving([](int socket) {
    FakeAgent::Request first;
    FakeAgent::Request second;
    if (!FakeAgent::ReceiveFrame(socket, first) || !FakeAgent::ReceiveFrame(socket, second)) return;
    for (const auto* request : {&second, &first}) {
      auto reply = FakeAgent::ReplyTo(request->id());
      reply.set_error(request->has_ping() ? 11 : 22);
      FakeAgent::SendFrame(socket, reply);
    }
    FakeAgent::Drain(socket);
  });
  const auto connection = Open();
  auto ping = std::async(std::launch::async, [&] { return Ping(*connection, kLong); });
  ClientMessage request;
  request.mutable_status();
  Connection::Incoming reply;
  EXPECT_EQ(connection->Call(request, kLong, reply), 22u);
  EXPECT_EQ(ping.get(), 11u);
}

TEST_F(ConnectionTest, EventsComeInOrderAndBehindTheRepliesBeforeThem) {
  FakeAgent agent;
  std::promise<std::vector<uint64_t>> received;
  std::vector<uint64_t> orders;
  const auto connection = Open([&](Connection::Incoming&& event) {
    orders.push_back(event.order);
    if (orders.size() == 2) received.set_value(orders);
  });
  ClientMessage request;
  request.mutable_ping();
  Connection::Incoming reply;
  ASSERT_EQ(connection->Call(request, kLong, reply), CoreErrorCodes::kSuccess);
  FakeAgent::Reply event;
  event.mutable_library_changed();
  agent.SendEvent(event);
  agent.SendEvent(event);
  const auto seen = received.get_future().get();
  EXPECT_LT(reply.order, seen[0]);
  EXPECT_LT(seen[0], seen[1]);
}

}  // namespace
