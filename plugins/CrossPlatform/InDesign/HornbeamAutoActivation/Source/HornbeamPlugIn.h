#pragma once

#include "PlugIn.h"

/// This plug-in as the host sees it: its name and its bosses.
class HornbeamPlugIn : public PlugIn {
 public:
  /// The one object, built on first use.
  static HornbeamPlugIn& GetInstance();

  const char* GetName() const override;
  std::span<const BossDefinition> GetBosses() const override;
};
