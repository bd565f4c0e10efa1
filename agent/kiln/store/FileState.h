#pragma once

#include "protocol/Kiln.pb.h"

namespace kiln {

/// What was found when a file of the vault was last looked at. The numbers stand in the database.
enum class FileState {
  kSound = 0,
  kMissing = 1,   ///< it has gone
  kUnusable = 2,  ///< it is there, but isn't what was put there
};

/// How clients see a font of the file that isn't active.
inline wire::ActivationState StateOfInactive(FileState file) {
  if (file == FileState::kMissing) return wire::ACTIVATION_MISSING;
  return file == FileState::kUnusable ? wire::ACTIVATION_UNUSABLE : wire::ACTIVATION_INACTIVE;
}

}  // namespace kiln
