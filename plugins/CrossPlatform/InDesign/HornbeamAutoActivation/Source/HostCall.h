#pragma once

#include <exception>
#include <utility>

#include "Utilities/DebugUtils.h"

/// A call of the host, under way as long as the object lives. Calls can stand inside one another: a message
/// box that one of them shows runs the host's events, and these come in as calls of their own.
///
/// Thread: any; each thread has calls of its own.
class HostCallScope {
 public:
  HostCallScope();
  HostCallScope(const HostCallScope&) = delete;
  HostCallScope& operator=(const HostCallScope&) = delete;

  /// The end of the outermost call runs what RunWhenOver() was given.
  ~HostCallScope();

  static bool IsUnderWay();

  /// For what may not happen while another call is at work on the same things. Must not throw.
  ///
  /// \param work  Runs once, behind the outermost call of this thread; it takes the place of an earlier one.
  static void RunWhenOver(void (*work)());
};

/// Runs what the host has called for, and keeps every exception on this side: nothing may be thrown into the
/// host, and what was done until then stands.
///
/// \param operation  Named in the trace line.
template <class Work>
void HostCall(const char* operation, Work&& work) {
  const HostCallScope scope;
  try {
    std::forward<Work>(work)();
  } catch (const std::exception& error) {
    OutputIndentedAndFormattedString(0, "*** ERROR:  %s ended by an exception:  %s", operation, error.what());
  } catch (...) {
    OutputIndentedAndFormattedString(0, "*** ERROR:  %s ended by an exception", operation);
  }
}
