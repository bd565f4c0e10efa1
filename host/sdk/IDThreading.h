#pragma once

#include "ISession.h"

namespace IDThreading {

/// Whether the calling thread is the host's main one, where dialogs may be shown. False without a session.
inline bool IsMainThreadDomain() {
  ISession* session = GetExecutionContextSession();
  return session != nullptr && session->IsMainThreadDomain();
}

}  // namespace IDThreading
