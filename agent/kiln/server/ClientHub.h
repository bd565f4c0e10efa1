#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "kiln/activation/ActivationBook.h"
#include "protocol/Kiln.pb.h"

namespace kiln {

/// Reaches the clients that are connected.
class ClientHub {
 public:
  virtual ~ClientHub() = default;

  /// To every client that has said Hello.
  virtual void Broadcast(const wire::ServerMessage& event) = 0;
  /// To all connections of one client.
  virtual void SendTo(int64_t clientID, const wire::ServerMessage& event) = 0;
  /// Connections that have said Hello.
  virtual size_t CountOfClients() const = 0;

  /// Tells everybody whom it concerns what became visible and what went.
  /// \param clientID  Whose process the local changes are about.
  void Announce(int64_t clientID, const ActivationChange& change);
};

}  // namespace kiln
