#pragma once

#include <exception>
#include <utility>

#include "Utilities/DebugUtils.h"

/// Runs what the host has called for, and keeps every exception on this side: nothing may be thrown into the
/// host, and what was done until then stands.
///
/// \param operation  Named in the trace line.
template <class Work>
void HostCall(const char* operation, Work&& work) {
  try {
    std::forward<Work>(work)();
  } catch (const std::exception& error) {
    OutputIndentedAndFormattedString(0, "*** ERROR:  %s ended by an exception:  %s", operation, error.what());
  } catch (...) {
    OutputIndentedAndFormattedString(0, "*** ERROR:  %s ended by an exception", operation);
  }
}
