#pragma once

#include <atomic>
#include <optional>

#include "agent/client/FakeAgent.h"

/// Stands between the clients and the Kiln that listens in this session, passes everything on, and kills Kiln
/// in the middle of a call when told to. A Kiln that is started afterwards takes its socket back.
class Interposer {
 public:
  using Kind = kiln::wire::ClientMessage::BodyCase;
  enum class Kill {
    kOnRequest,  ///< when the request has come, before Kiln sees it
    kOnReply,    ///< when Kiln has done it, before the client sees the answer
  };

  /// Waits for Kiln to listen.
  Interposer();

  /// At the next request of the kind; without one, at the next that isn't part of connecting.
  void KillKilnOn(Kill moment, std::optional<Kind> kind = std::nullopt);

 private:
  void Relay(int client);
  void PassReplies(int kiln, int client);
  bool IsMeant(const kiln::wire::ClientMessage& request) const;

  std::atomic<bool> m_armed = false;
  std::atomic<Kill> m_moment = Kill::kOnRequest;
  std::atomic<Kind> m_kind = Kind::BODY_NOT_SET;
  std::atomic<uint32_t> m_awaitedReply = 0;
  std::string m_kilnSocket;
  FakeAgent m_agent;
};
