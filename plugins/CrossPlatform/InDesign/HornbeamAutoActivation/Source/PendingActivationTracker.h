#pragma once

#include <CoreFoundation/CoreFoundation.h>

#include "Memory/RetainPtr.h"

/// Fonts whose change has been asked for but which the host may not have seen yet: the agent can report a
/// font as deactivated while the host still offers it, or the reverse.
///
/// A check compares each with what the host says. With a limit of retries above 0 a request that the host has
/// not followed is repeated, and the check says so; at 0 every font is checked once and dropped.
///
/// The deactivated list is handed to FontActivationTracker::CloseAllFontsForIdentifier(), which fills it.
///
/// Thread: main.
class PendingActivationTracker {
 public:
  /// \param nMaxRetries  How many rounds of retries each list gets.
  explicit PendingActivationTracker(int nMaxRetries = MaxWorkaroundRetries());
  PendingActivationTracker(const PendingActivationTracker&) = delete;
  PendingActivationTracker& operator=(const PendingActivationTracker&) = delete;
  ~PendingActivationTracker() = default;

  /// No retries at all: the host follows by itself.
  static constexpr int MaxWorkaroundRetries() { return 0; }

  /// The list, made on first use. Not retained for the caller.
  CFMutableArrayRef GetPendingDeactivatedFonts();

  /// Takes the fonts that are in the other list out of this one: a font that was activated again is no longer
  /// on its way out, and the reverse.
  ///
  /// \return How many were removed.
  int RemoveConflictingPendingDeactivatedFonts();
  int RemoveConflictingPendingActivatedFonts();

  /// Checks both lists, the activations first; the deactivations wait for them.
  ///
  /// \return Whether both are settled: followed by the host, given up, or empty. True without a font manager
  ///         of the host or an agent's, with nothing checked.
  bool CheckPendingActivationChanges();
  bool CheckPendingActivations();
  bool CheckPendingDeactivations();

 protected:
  /// Not filled by the plug-in itself.
  RetainPtr<CFMutableArrayRef> m_PendingActivatedFonts;
  RetainPtr<CFMutableArrayRef> m_PendingDeactivatedFonts;

 private:
  bool CheckPendingActivationChanges(bool activation);

  int m_nMaxRetries;
  int m_nActivationRetryCount = 0;
  int m_nDeactivationRetryCount = 0;
};
