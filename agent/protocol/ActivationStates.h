#pragma once

#include "protocol/Kiln.pb.h"

/// What the activation states mean for those who only ask "active or not".
namespace kiln {

/// For all programs, and not in one client's process only.
inline bool IsGlobal(wire::ActivationState kind) {
  return kind == wire::ACTIVATION_AUTO || kind == wire::ACTIVATION_TEMPORARY ||
         kind == wire::ACTIVATION_PERMANENT;
}

/// The asking client sees the font.
inline bool IsActive(wire::ActivationState state) {
  return state != wire::ACTIVATION_INACTIVE && state != wire::ACTIVATION_MISSING &&
         state != wire::ACTIVATION_UNUSABLE;
}

}  // namespace kiln
