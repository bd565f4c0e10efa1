#pragma once

#include <memory>
#include <optional>

#include "KilnConnection.h"
#include "PlugInLogic.h"
#include "Workgroups.h"

/// What commands begin with that know libraries by their names. Thread: main.
struct LibrarySession {
  /// \return Nothing when Kiln can't be used; standard error says why.
  static std::optional<LibrarySession> Open();

  std::unique_ptr<KilnConnection> kiln;
  std::unique_ptr<PlugInLogic> logic;
  Workgroups workgroups;
};
