#pragma once

#include <string>

/// A font whose activation is noted for later, by its PostScript name.
struct ActivationListElement {
  std::string postscriptName;
};
