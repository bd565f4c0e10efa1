#pragma once

#include "GTypes.h"

/// The plain form of GDateTime; all zeros means no date.
struct SDateTime {
  TSInt16 year = 0;
  TSInt16 month = 0;
  TSInt16 day = 0;
  TSInt16 hour = 0;
  TSInt16 minute = 0;
  TSInt16 second = 0;
  TSInt16 millisecond = 0;

  bool operator==(const SDateTime&) const = default;
};
