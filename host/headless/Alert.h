#pragma once

#include "CPMUnknown.h"
#include "IAlert.h"

namespace headless {

/// The host's message box in a host without windows: "hornbeam: " and the text on standard error, as one
/// line.
class Alert final : public CPMUnknown<IAlert> {
 public:
  explicit Alert(IPMUnknown* boss) : CPMUnknown(boss) {}

  void ShowInformation(const PMString& text) override;
};

}  // namespace headless
