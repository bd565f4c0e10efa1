#pragma once

#include <string>

#include "KilnConnection.h"

/// Where Kiln takes fonts from, beside what the user adds.
struct ServerState {
  /// \return 0 or the agent's code, with `outState` untouched.
  static ErrCode Read(const KilnConnection& kiln, ServerState& outState);

  bool isStandalone = true;  ///< no font server stands behind it
  std::string server;        ///< the server's folder; known also when nobody is logged in
  std::string user;
  bool isLoggedIn = false;
  bool isOnline = false;
  bool isGoogleOn = false;
  std::string googleFolder;   ///< known also when it is off
  bool isTakingOver = false;  ///< fonts are on their way
};
