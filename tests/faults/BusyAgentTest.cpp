#include <atomic>
#include <thread>

#include "FaultTest.h"
#include "client/Session.h"

namespace {

constexpr int kFonts = 400;

TEST_F(FaultTest, AnAgentAtWorkIsSeenToLive) {
  FillLibrary(kFonts);
  std::atomic<bool> isDone = false;
  Session working("11111111-2222-3333-4444-555555555555", [](auto&&) {});
  Session watching("66666666-7777-8888-9999-000000000000", [](auto&&) {});
  const auto ping = [&watching] {
    kiln::wire::ClientMessage request;
    Connection::Incoming reply;
    request.mutable_ping();
    return watching.Call(request, reply);
  };
  ASSERT_EQ(ping(), CoreErrorCodes::kSuccess);
  std::thread work([&] {
    kiln::wire::ClientMessage request;
    Connection::Incoming reply;
    auto& document = *request.mutable_activate_document_fonts();
    for (int i = 0; i < kFonts; ++i) {
      document.add_fonts()->set_postscript_name("Fault-" + std::to_string(i));
    }
    EXPECT_EQ(working.Call(request, reply, {.answer = std::chrono::minutes(1)}), CoreErrorCodes::kSuccess);
    EXPECT_EQ(reply.message.activate_document_fonts().matched_size(), kFonts);
    isDone = true;
  });
  int answered = 0;
  while (!isDone) answered += ping() == CoreErrorCodes::kSuccess ? 1 : 0;
  work.join();
  EXPECT_GT(answered, 5);
  working.Drop();
  watching.Drop();
}

}  // namespace
