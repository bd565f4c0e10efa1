#pragma once

#include <cstdint>

/// The kind of server that a change of the logged-in state concerns, as the agent delivers it under the key
/// "serverType". The agent defines the values; one alone means something here.
enum class EServerType : int32_t {
  /// Not the plug-in's own login: passed on to the panels, and nothing else happens.
  kNotOwnLogin = 3,
};
