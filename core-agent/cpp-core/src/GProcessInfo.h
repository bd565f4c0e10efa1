#pragma once

#include <string>

#include "GTypes.h"

/// What the running process is.
class GProcessInfo {
 public:
  GProcessInfo() = delete;

  /// The version of the main bundle, such as "15.0.2", from its "CFBundleShortVersionString", else from
  /// "CFBundleVersion".
  ///
  /// \return CoreErrorCodes::kNotFound, with `outVersion` untouched, for a program without one.
  static TErrCode OSGetCurrentProcessVersionString(std::string& outVersion);
};
